// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Embeds the effect's interface in the panel of the main screen.
#include "app/interface/ViewController.hpp"

#include "app/Audio Engine/AUExtensionManager.hpp"
#include "platform/effects/AUAudioUnit.hpp"
#include "platform/effects/AUViewController.hpp"
#include "platform/effects/AVAudioUnit.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "shared/Common/Extensions/pinToSuperviewEdges.hpp"

namespace tonewright {

using platform::print;
using platform::unwrap;

namespace {

constexpr double PluginAspectRatio = 1.0; // height over width

} // namespace

void ViewController::onFoundComponent(const std::shared_ptr<platform::AVAudioUnit>& unit) {
    print("ViewController: Loading the audio unit's interface...");
    if (!unit) {
        print("ERROR: The audio unit is not initialized to load the user interface.");
        return;
    }
    const auto weakSelf =
        std::weak_ptr<ViewController>(std::static_pointer_cast<ViewController>(shared_from_this()));
    unit->auAudioUnit()->requestViewController(
        [weakSelf](const std::shared_ptr<platform::UIViewController>& controller) {
            const auto self = weakSelf.lock();
            if (!self) {
                print("ERROR: Self is nil !?");
                return;
            }
            const auto controllerView = controller ? controller->view() : nullptr;
            if (!controllerView) {
                print("ERROR: Something is wrong with the view controller and view of the audio unit.");
                return;
            }
            self->embed(controller, controllerView);
            controllerView->setNeedsDisplay();
        });
}

void ViewController::embed(const std::shared_ptr<platform::UIViewController>& controller,
                           const std::shared_ptr<platform::UIView>& controllerView) {
    addChildViewController(controller);
    controllerView->setFrame(unwrap(pluginView).bounds());
    unwrap(pluginView).addSubview(controllerView);
    pinToSuperviewEdges(*controllerView);
    controller->didMoveToParentViewController(
        std::static_pointer_cast<platform::UIViewController>(shared_from_this()));
}

void ViewController::embedPlugInView() {
    const std::shared_ptr<platform::UIViewController> controller = unwrap(audioUnitManager).viewController;
    if (!controller) platform::fatal("ERROR: Could not load audio unit's view controller.");
    if (const auto controllerView = controller->view()) embed(controller, controllerView);
}

void ViewController::centerPluginView() {
    const platform::CGRect bounds = unwrap(view()).bounds();
    resetPluginView(CGRectGetWidth(bounds), CGRectGetHeight(bounds));
}

void ViewController::resetPluginView(double w, double h) {
    if (!audioUnitViewController) {
        print("WARNING: Cannot reset the pluginview (yet).");
        return;
    }
    // The square's side is the longer side of the screen. Along the shorter side the square extends beyond
    // the screen by the same amount at both ends.
    if (w < h) {
        const double side = h / PluginAspectRatio;
        const double x = CGRectGetWidth(unwrap(view()).bounds()) * 0.5 - side * 0.5;
        unwrap(pluginView).setFrame({x, 0, side, h});
        unwrap(audioUnitView()).setFrame({0, 0, side, h});
    } else {
        const double side = w * PluginAspectRatio;
        const double y = CGRectGetHeight(unwrap(view()).bounds()) * 0.5 - side * 0.5;
        unwrap(pluginView).setFrame({0, y, w, side});
        unwrap(audioUnitView()).setFrame({0, 0, w, side});
    }
    unwrap(pluginView).setNeedsDisplay();
}

std::shared_ptr<platform::UIView> ViewController::audioUnitView() const {
    return audioUnitViewController ? audioUnitViewController->view() : nullptr;
}

} // namespace tonewright
