// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/toolkit/keyboardFocus.hpp"

#include <gdk/x11/gdkx.h>

namespace platform {
namespace {

void onActive(GtkWindow* window, GParamSpec*, gpointer) {
    GdkSurface* surface = gtk_native_get_surface(GTK_NATIVE(window));
    if (gtk_window_is_active(window) == FALSE || surface == nullptr || !GDK_IS_X11_SURFACE(surface)) return;
    GdkDisplay* display = gdk_surface_get_display(surface);
    if (gdk_x11_screen_supports_net_wm_hint(gdk_x11_display_get_screen(display),
                                            g_intern_static_string("_NET_ACTIVE_WINDOW")) != FALSE) {
        return;
    }
    // Without a window manager, this sends the message that one would send (ICCCM 4.1.7). GDK then moves the
    // focus to an invisible child window that the pointer cannot enter.
    XEvent event{};
    event.xclient.type = ClientMessage;
    event.xclient.window = gdk_x11_surface_get_xid(surface);
    event.xclient.message_type = gdk_x11_get_xatom_by_name_for_display(display, "WM_PROTOCOLS");
    event.xclient.format = 32;
    event.xclient.data.l[0] =
        static_cast<long>(gdk_x11_get_xatom_by_name_for_display(display, "WM_TAKE_FOCUS"));
    event.xclient.data.l[1] = CurrentTime;
    XSendEvent(gdk_x11_display_get_xdisplay(display), event.xclient.window, False, NoEventMask, &event);
}

GQuark pointerQuark() {
    static const GQuark quark = g_quark_from_static_string("platform-uses-pointer");
    return quark;
}

gboolean onInput(GtkEventControllerLegacy* controller, GdkEvent* event, gpointer) {
    GtkWidget* window = gtk_event_controller_get_widget(GTK_EVENT_CONTROLLER(controller));
    const GdkEventType type = gdk_event_get_event_type(event);
    const bool isPointer = type == GDK_BUTTON_PRESS || type == GDK_TOUCH_BEGIN;
    if (isPointer || type == GDK_KEY_PRESS) {
        g_object_set_qdata(G_OBJECT(window), pointerQuark(), isPointer ? window : nullptr);
    }
    if (isPointer) {
        gtk_window_set_focus_visible(GTK_WINDOW(window), FALSE);
    }
    return GDK_EVENT_PROPAGATE;
}

void onFocusVisible(GtkWindow* window, GParamSpec*, gpointer) {
    if (gtk_window_get_focus_visible(window) == FALSE &&
        g_object_get_qdata(G_OBJECT(window), pointerQuark()) == nullptr) {
        gtk_window_set_focus_visible(window, TRUE);
    }
}

} // namespace

void keepKeysFromThePointer(GtkWindow* window) {
    g_signal_connect(window, "notify::is-active", G_CALLBACK(onActive), nullptr);
}

void keepFocusShown(GtkWindow* window) {
    g_object_set_qdata(G_OBJECT(window), pointerQuark(), window); // no focus ring before the first key press
    GtkEventController* input = gtk_event_controller_legacy_new();
    gtk_event_controller_set_propagation_phase(input, GTK_PHASE_CAPTURE);
    g_signal_connect(input, "event", G_CALLBACK(onInput), nullptr);
    gtk_widget_add_controller(GTK_WIDGET(window), input);
    g_signal_connect(window, "notify::focus-visible", G_CALLBACK(onFocusVisible), nullptr);
}

} // namespace platform
