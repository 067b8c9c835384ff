// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Presenting and dismissing screens, and the segues of interface descriptions.
#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "platform/ui/UIStoryboardSegue.hpp"
#include "platform/ui/UIViewController.hpp"
#include "platform/ui/classRegistry.hpp"
#include "platform/ui/detail/dialogWindow.hpp"
#include "platform/ui/interface/InterfaceDescription.hpp"
#include "platform/ui/widgets.hpp"

#include <gtk/gtk.h>
#include <utility>

namespace platform {

/// A presented screen, and the state that is restored when it is dismissed.
struct UIViewController::Presentation {
    Presentation(std::shared_ptr<UIViewController> shown, GtkWindow* window)
        : controller(std::move(shown))
        , covered(GObjectRef<GtkWidget>::keep(gtk_window_get_child(window))) {
        g_weak_ref_init(&focus, gtk_window_get_focus(window));
    }
    ~Presentation() { g_weak_ref_clear(&focus); }
    Presentation(const Presentation&) = delete;
    Presentation& operator=(const Presentation&) = delete;

    /// Restores the covered screen and its keyboard focus.
    void end(GtkWindow* window) {
        gtk_window_set_child(window, covered.get());
        const auto focused = GObjectRef<GtkWidget>::adopt(static_cast<GtkWidget*>(g_weak_ref_get(&focus)));
        if (focused && gtk_widget_get_root(focused.get()) == GTK_ROOT(window)) {
            gtk_window_set_focus(window, focused.get());
        }
    }

    std::shared_ptr<UIViewController> controller;
    GObjectRef<GtkWidget> covered;
    GWeakRef focus{};
};

// The covered view is removed from the window. If it stayed, the X window of an effect's interface would
// still be visible in front of the new screen, and keys would still reach the covered controls.
void UIViewController::showOver(UIViewController& presenter, bool animated,
                                std::function<void()> completion) {
    const auto self = std::static_pointer_cast<UIViewController>(shared_from_this());
    const auto presenting = std::static_pointer_cast<UIViewController>(presenter.shared_from_this());
    GtkWindow* window = windowOf(presenter);
    const auto shown = window == nullptr || presenter._presentation ? nullptr : view();
    if (!shown) {
        warn("A screen cannot be shown: it has no view, or its presenter is in no window or already presents "
             "a screen.");
        return;
    }
    viewWillAppear(animated);
    presenter.viewWillDisappear(animated);
    presenter._presentation = std::make_shared<Presentation>(self, window);
    _presenting = presenting;
    gtk_window_set_focus(window, nullptr);
    gtk_window_set_child(window, widgetOf(*shown));
    if (gtk_window_get_focus(window) == nullptr) {
        gtk_widget_child_focus(widgetOf(*shown), GTK_DIR_TAB_FORWARD);
    }
    viewDidAppear(animated);
    presenter.viewDidDisappear(animated);
    callLater(std::move(completion));
}

void UIViewController::dismissViewControllerAnimated(bool animated, std::function<void()> completion) {
    const auto self = shared_from_this(); // the presenter may be the only owner
    if (!_presentation) {
        if (const auto presenter = _presenting.lock()) {
            presenter->dismissViewControllerAnimated(animated, std::move(completion));
        }
        return;
    }
    const auto presentation = std::exchange(_presentation, nullptr);
    UIViewController& leaving = *presentation->controller;
    leaving._presenting.reset();
    if (leaving._presentation) leaving.dismissViewControllerAnimated(false, nullptr);
    leaving.viewWillDisappear(animated);
    viewWillAppear(animated);
    if (GtkWindow* window = windowOf(leaving)) presentation->end(window);
    leaving.viewDidDisappear(animated);
    viewDidAppear(animated);
    callLater(std::move(completion));
}

std::shared_ptr<UIViewController> UIViewController::presentedViewController() const {
    return _presentation ? _presentation->controller : nullptr;
}

void UIViewController::performSegueWithIdentifier(const std::string& identifier,
                                                  const std::shared_ptr<UIResponder>& sender) {
    const auto self = std::static_pointer_cast<UIViewController>(shared_from_this());
    const auto name = _description ? _description->destinationOfSegue(identifier) : std::nullopt;
    if (!name) fatal("The interface description has no segue with the identifier \"" + identifier + "\"");
    const auto description =
        InterfaceDescription::load(*name, _bundle == nullptr ? Bundle::main() : *_bundle);
    const auto destination =
        description ? makeController(description->controllerClass(), NSCoder(description)) : nullptr;
    if (!destination) fatal("The segue \"" + identifier + "\" leads to no screen");
    prepare(UIStoryboardSegue(identifier, self, destination), sender);
    presentViewController(destination, true, nullptr);
}

void UIViewController::prepare(const UIStoryboardSegue&, const std::shared_ptr<UIResponder>&) {}

} // namespace platform
