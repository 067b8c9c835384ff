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
    // Asks as a window manager does (ICCCM 4.1.7); the toolkit then takes the keys with an invisible child of
    // the window, which the pointer is never over.
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

} // namespace

void keepKeysFromThePointer(GtkWindow* window) {
    g_signal_connect(window, "notify::is-active", G_CALLBACK(onActive), nullptr);
}

} // namespace platform
