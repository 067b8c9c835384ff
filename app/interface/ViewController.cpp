// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/interface/ViewController.hpp"

#include "app/Audio Engine/AUEnginePlayer.hpp"
#include "app/Audio Engine/AUExtensionManager.hpp"
#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/FileManager.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"

namespace tonewright {

using platform::print;
using platform::unwrap;

ViewController::ViewController(std::optional<std::string> nibName, const platform::Bundle* bundle)
    : UIViewController(std::move(nibName), bundle) {}

ViewController::ViewController(const platform::NSCoder& coder)
    : UIViewController(coder) {}

std::shared_ptr<ViewController> ViewController::initWithCoder(const platform::NSCoder& coder) {
    if (!canDecode(coder)) return nullptr;
    return std::shared_ptr<ViewController>(new ViewController(coder));
}

void ViewController::offerConnections(platform::InterfaceConnections& connections) {
    connections.outlet("pluginView", pluginView);
    connections.outlet("buttonUnit", buttonUnit);
    connections.outlet("buttonInfo", buttonInfo);
    connections.outlet("buttonHelp", buttonHelp);
    connections.outlet("playButton", playButton);
    connections.outlet("stopButton", stopButton);
    connections.action("onButtonUnit:", this, &ViewController::onButtonUnit);
    connections.action("onPlayButton:", this, &ViewController::onPlayButton);
    connections.action("onStopButton:", this, &ViewController::onStopButton);
    connections.action("showHelp:", this, &ViewController::showHelp);
}

void ViewController::viewDidLoad() {
    UIViewController::viewDidLoad();
    print("Info: Main view controller loaded.");
    unwrap(playButton).setHidden(false);
    unwrap(stopButton).setHidden(true);
    const auto self = std::static_pointer_cast<ViewController>(shared_from_this());
    audioUnitManager = AUExtensionManager::create(self);
    unwrap(audioUnitManager).auEngine->delegate = self;
    unwrap(pluginView).setHidden(true);
    getDirectories();
}

void ViewController::viewWillAppear(bool animated) {
    UIViewController::viewWillAppear(animated);
}

void ViewController::viewDidDisappear(bool animated) {
    UIViewController::viewDidDisappear(animated);
}

// Constraints keep the effect's view the size of the panel, so there is nothing to do.
void ViewController::viewDidLayoutSubviews() {
    UIViewController::viewDidLayoutSubviews();
}

bool ViewController::canPerformAction(std::string_view selector,
                                      const std::shared_ptr<platform::UIResponder>& withSender) {
    return UIViewController::canPerformAction(selector, withSender);
}

void ViewController::onButtonUnit(const std::shared_ptr<platform::UIResponder>&) {
    unwrap(pluginView).setHidden(!unwrap(pluginView).isHidden());
}

void ViewController::onPlayButton(const std::shared_ptr<platform::UIButton>&) {
    unwrap(audioUnitManager).togglePlayback();
}

void ViewController::onStopButton(const std::shared_ptr<platform::UIButton>&) {
    unwrap(audioUnitManager).togglePlayback();
}

void ViewController::onEngineInitialized() {}

void ViewController::onPlayerStateChanged(bool playing) {
    unwrap(playButton).setHidden(playing);
    unwrap(stopButton).setHidden(!playing);
}

void ViewController::onFileSelect(const std::string&) {}

void ViewController::onLoop(std::int64_t) {}

void ViewController::getDirectories() {
    const auto documents = platform::FileManager::defaultManager().URLsForDirectory(
        platform::SearchPathDirectory::Document, platform::SearchPathDomain::User);
    if (documents.empty()) platform::fatal("ViewController: There is no documents directory.");
    // The list is not empty, so the else branch is never taken.
    if (const std::optional<platform::URL> first = documents.front()) {
        documentsPath = first->path();
        print("ViewController: The app's documents path is: " + documentsPath);
    } else {
        print("ViewController: Documents directory is nil.");
    }
    const auto resources = platform::Bundle::main().resourceURL();
    if (!resources) {
        print("ViewController: Resources folder is nil.");
        return;
    }
    resourcesPath = resources->path();
    print("ViewController: The app's resources path is: " + resourcesPath);
}

} // namespace tonewright
