// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/growWindow.hpp"

#include <X11/Xatom.h>
#include <algorithm>
#include <gdk/x11/gdkx.h>

namespace platform {
namespace {

struct Borders {
    int left = 0, right = 0, top = 0, bottom = 0; // device pixels
};

// Returns the widths of the frame that the window manager has put around the window.
Borders bordersOf(GdkDisplay* display, Window window) {
    Atom type = None;
    int format = 0;
    unsigned long count = 0, more = 0;
    unsigned char* data = nullptr;
    Borders borders;
    gdk_x11_display_error_trap_push(display);
    const Atom name = gdk_x11_get_xatom_by_name_for_display(display, "_NET_FRAME_EXTENTS");
    if (XGetWindowProperty(gdk_x11_display_get_xdisplay(display), window, name, 0, 4, False, XA_CARDINAL,
                           &type, &format, &count, &more, &data) == Success &&
        count == 4 && format == 32) {
        const auto* values = reinterpret_cast<const long*>(data);
        borders = {static_cast<int>(values[0]), static_cast<int>(values[1]), static_cast<int>(values[2]),
                   static_cast<int>(values[3])};
    }
    if (data != nullptr) XFree(data);
    gdk_x11_display_error_trap_pop_ignored(display);
    return borders;
}

// Returns the area in which the window's frame must stay, in device pixels of the root window.
GdkRectangle workAreaOf(GdkSurface* surface) {
    GdkMonitor* monitor = gdk_display_get_monitor_at_surface(gdk_surface_get_display(surface), surface);
    GdkRectangle area{};
    if (monitor == nullptr) return area;
    gdk_x11_monitor_get_workarea(monitor, &area);
    const int scale = gdk_surface_get_scale_factor(surface);
    return {area.x * scale, area.y * scale, area.width * scale, area.height * scale};
}

} // namespace

void growWindow(GtkWidget* widget, int width, int height) {
    auto* window = GTK_WINDOW(gtk_widget_get_root(widget));
    GdkSurface* surface = gtk_native_get_surface(GTK_NATIVE(window));
    if (!GDK_IS_X11_SURFACE(surface) || gtk_window_is_maximized(window) != FALSE ||
        gtk_window_is_fullscreen(window) != FALSE) {
        return;
    }
    GdkDisplay* gdkDisplay = gdk_surface_get_display(surface);
    Display* display = gdk_x11_display_get_xdisplay(gdkDisplay);
    const Window id = gdk_x11_surface_get_xid(surface);
    const int scale = gdk_surface_get_scale_factor(surface);
    const GdkRectangle area = workAreaOf(surface);
    const Borders borders = bordersOf(gdkDisplay, id);
    const int nowWidth = gtk_widget_get_width(GTK_WIDGET(window));
    const int nowHeight = gtk_widget_get_height(GTK_WIDGET(window));
    const auto grown = [scale](int now, int lacking, int most) {
        return std::max(now, std::min(now + std::max(lacking, 0), most / scale));
    };
    const int newWidth =
        grown(nowWidth, width - gtk_widget_get_width(widget), area.width - borders.left - borders.right);
    const int newHeight =
        grown(nowHeight, height - gtk_widget_get_height(widget), area.height - borders.top - borders.bottom);
    if (newWidth == nowWidth && newHeight == nowHeight) return;
    gtk_window_set_default_size(window, newWidth, newHeight);

    int x = 0, y = 0;
    Window child = None;
    gdk_x11_display_error_trap_push(gdkDisplay);
    XTranslateCoordinates(display, id, DefaultRootWindow(display), 0, 0, &x, &y, &child);
    const auto moved = [](int now, int length, int first, int last) {
        return std::min(now, std::max(first, last - length));
    };
    const int newX = moved(x, newWidth * scale, area.x + borders.left, area.x + area.width - borders.right);
    const int newY = moved(y, newHeight * scale, area.y + borders.top, area.y + area.height - borders.bottom);
    // Window managers interpret this position as the position of the frame.
    if (newX != x || newY != y) XMoveWindow(display, id, newX - borders.left, newY - borders.top);
    gdk_x11_display_error_trap_pop_ignored(gdkDisplay);
}

} // namespace platform
