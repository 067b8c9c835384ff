// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIWindow.hpp"

#include "platform/ui/UIViewController.hpp"
#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/toolkit/buttonKeys.hpp"
#include "platform/ui/toolkit/keyboardFocus.hpp"
#include "platform/ui/widgets.hpp"

#include <gtk/gtk.h>

namespace platform {
namespace {

gboolean onCloseRequested(GtkWindow*, gpointer self) {
    const auto onCloseRequest =
        static_cast<UIWindow*>(self)->onCloseRequest; // a copy: the call may replace the function
    if (onCloseRequest) onCloseRequest();
    return GDK_EVENT_STOP; // the window stays open until the owner closes it
}

void onIsActive(GtkWindow* window, GParamSpec*, gpointer self) {
    const auto onActiveChange = static_cast<UIWindow*>(self)->onActiveChange;
    if (onActiveChange) onActiveChange(gtk_window_is_active(window) != FALSE);
}

} // namespace

UIWindow::UIWindow()
    : UIWindow(makeImplementation(gtk_window_new())) {}

UIWindow::UIWindow(ImplementationPointer implementation)
    : UIView(std::move(implementation)) {
    auto* window = GTK_WINDOW(widgetOf(*this));
    g_signal_connect(window, "close-request", G_CALLBACK(onCloseRequested), this);
    g_signal_connect(window, "notify::is-active", G_CALLBACK(onIsActive), this);
    watchHeldKeys(window);
    keepKeysFromThePointer(window);
    keepFocusShown(window);
}

UIWindow::~UIWindow() {
    GtkWidget* window = widgetOf(*this);
    g_signal_handlers_disconnect_by_data(window, this);
    gtk_window_destroy(GTK_WINDOW(window));
}

void UIWindow::setRootViewController(std::shared_ptr<UIViewController> controller) {
    _rootViewController = std::move(controller);
    const auto view = _rootViewController ? _rootViewController->view() : nullptr;
    GtkWidget* content = view ? widgetOf(*view) : nullptr;
    auto* window = GTK_WINDOW(widgetOf(*this));
    if (gtk_window_get_child(window) != content) gtk_window_set_child(window, content);
}

void UIWindow::makeKeyAndVisible() {
    gtk_window_present(GTK_WINDOW(widgetOf(*this)));
}

void UIWindow::close() {
    setHidden(true);
}

} // namespace platform
