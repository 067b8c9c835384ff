// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/widgetPlaces.hpp"

#include <cmath>

namespace platform::lv2 {

PixelRect placeOf(GtkWidget* widget, GtkNative* native) {
    graphene_rect_t bounds;
    if (!gtk_widget_compute_bounds(widget, GTK_WIDGET(native), &bounds)) return {};
    double x = 0, y = 0; // position of the native widget in its surface
    gtk_native_get_surface_transform(native, &x, &y);
    const double scale = gtk_widget_get_scale_factor(widget);
    const auto pixel = [scale](double point) { return static_cast<int>(std::lround(point * scale)); };
    const int left = pixel(bounds.origin.x + x), top = pixel(bounds.origin.y + y);
    return {left, top, pixel(bounds.origin.x + x + bounds.size.width) - left,
            pixel(bounds.origin.y + y + bounds.size.height) - top};
}

PixelRect visiblePartOf(const PixelRect& place, GtkWidget* widget, GtkNative* native) {
    PixelRect visible = place;
    for (GtkWidget* ancestor = gtk_widget_get_parent(widget); ancestor != nullptr;
         ancestor = gtk_widget_get_parent(ancestor)) {
        if (ancestor == GTK_WIDGET(native) || gtk_widget_get_overflow(ancestor) == GTK_OVERFLOW_HIDDEN) {
            visible = intersection(visible, placeOf(ancestor, native));
        }
    }
    return visible;
}

} // namespace platform::lv2
