// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/Canvas.hpp"

#include "platform/ui/detail/CanvasTarget.hpp"

#include <cmath>
#include <numbers>
#include <string>

namespace platform {
namespace {

// A single NaN coordinate puts the cairo context into an error state, in which it draws nothing more.
template <class... Numbers>
bool areFinite(Numbers... numbers) {
    return (... && std::isfinite(numbers));
}

bool isFinite(const CGRect& r) {
    return areFinite(r.x, r.y, r.width, r.height);
}

void setColor(cairo_t* cairo, const Color& color) {
    cairo_set_source_rgba(cairo, color.red, color.green, color.blue, color.alpha);
}

PangoAlignment alignmentFor(TextAlignment alignment) {
    switch (alignment) {
    case TextAlignment::Center:
        return PANGO_ALIGN_CENTER;
    case TextAlignment::Trailing:
        return PANGO_ALIGN_RIGHT;
    default:
        return PANGO_ALIGN_LEFT;
    }
}

} // namespace

GObjectRef<PangoLayout> lineOfText(GtkWidget* widget, std::string_view text, double size) {
    auto layout =
        GObjectRef<PangoLayout>::adopt(gtk_widget_create_pango_layout(widget, std::string(text).c_str()));
    PangoFontDescription* font = pango_font_description_copy(
        pango_context_get_font_description(pango_layout_get_context(layout.get())));
    pango_font_description_set_absolute_size(font, size * PANGO_SCALE);
    pango_layout_set_font_description(layout.get(), font);
    pango_font_description_free(font);
    return layout;
}

double Canvas::width() const noexcept {
    return _target.width;
}

double Canvas::height() const noexcept {
    return _target.height;
}

Color Canvas::textColor() const noexcept {
    return _target.textColor;
}

void Canvas::fillRectangle(const CGRect& rectangle, const Color& color) {
    if (!isFinite(rectangle)) return;
    setColor(_target.cairo, color);
    cairo_rectangle(_target.cairo, rectangle.x, rectangle.y, rectangle.width, rectangle.height);
    cairo_fill(_target.cairo);
}

void Canvas::fillCircle(Point center, double radius, const Color& color) {
    if (!areFinite(center.x, center.y, radius)) return;
    setColor(_target.cairo, color);
    cairo_arc(_target.cairo, center.x, center.y, radius, 0, 2 * std::numbers::pi);
    cairo_fill(_target.cairo);
}

void Canvas::strokeLine(std::span<const Point> points, double thickness, const Color& color) {
    if (!areFinite(thickness)) return;
    setColor(_target.cairo, color);
    cairo_set_line_width(_target.cairo, thickness);
    cairo_set_line_cap(_target.cairo, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_join(_target.cairo, CAIRO_LINE_JOIN_ROUND);
    for (const Point& point : points) {
        if (areFinite(point.x, point.y)) cairo_line_to(_target.cairo, point.x, point.y);
    }
    cairo_stroke(_target.cairo);
}

void Canvas::strokeRectangle(const CGRect& rectangle, double thickness, const Color& color) {
    if (!isFinite(rectangle) || !areFinite(thickness)) return;
    setColor(_target.cairo, color);
    cairo_set_line_width(_target.cairo, thickness);
    cairo_rectangle(_target.cairo, rectangle.x, rectangle.y, rectangle.width, rectangle.height);
    cairo_stroke(_target.cairo);
}

void Canvas::drawText(std::string_view text, const CGRect& place, double size, const Color& color,
                      TextAlignment alignment) {
    if (!isFinite(place) || !areFinite(size)) return;
    const auto layout = lineOfText(_target.widget, text, size);
    pango_layout_set_width(layout.get(), static_cast<int>(place.width * PANGO_SCALE));
    pango_layout_set_ellipsize(layout.get(), PANGO_ELLIPSIZE_END);
    pango_layout_set_alignment(layout.get(), alignmentFor(alignment));
    int height = 0;
    pango_layout_get_pixel_size(layout.get(), nullptr, &height);
    setColor(_target.cairo, color);
    cairo_move_to(_target.cairo, place.x, place.y + (place.height - height) / 2);
    pango_cairo_show_layout(_target.cairo, layout.get());
    cairo_new_path(_target.cairo); // otherwise the next line would start at the text
}

} // namespace platform
