// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "drawControls.hpp"

#include <numbers>

namespace tonewright::effect {
namespace {

constexpr double FirstAngle =
    0.75 * std::numbers::pi; // the lower left; knobs turn clockwise to the lower right
constexpr double Sweep = 1.5 * std::numbers::pi;

double angleOf(double travel) noexcept {
    return FirstAngle + Sweep * travel;
}

void drawFocus(cairo_t* context, const Rect& area, double unit) {
    strokeRoundedRect(context, area.inset(0.5), 4. * unit, Cool, std::max(1.25, 1.6 * unit));
}

void drawArc(cairo_t* context, Point centre, double radius, double from, double to, Colour colour,
             double width) {
    cairo_new_path(context);
    cairo_arc(context, centre.x, centre.y, radius, angleOf(std::min(from, to)), angleOf(std::max(from, to)));
    setColour(context, colour);
    cairo_set_line_width(context, width);
    cairo_stroke(context);
}

void drawKnob(cairo_t* context, const PanelControl& control, const ControlLook& look, double u) {
    const ParameterInfo& p = info(control.parameter);
    const Rect area = control.area;
    const double line = std::max(14. * u, 9.);
    const double textSize = std::max(11. * u, 7.5);
    drawText(context, {area.x, area.y, area.width, line}, std::string{p.label},
             {textSize, look.hovered || look.active ? Ink : DimInk, Align::Centre});
    drawText(context, {area.x, area.bottom() - line, area.width, line}, look.text,
             {textSize, look.active ? Warm : (look.hovered ? Ink : DimInk.mixed(Ink, 0.5)), Align::Centre});

    const Rect room{area.x, area.y + line, area.width, area.height - 2. * line};
    const double radius =
        std::max(std::min({room.width / 2. - 4. * u, room.height / 2. - 1.5 * u, 40. * u}), 4.);
    const Point c = room.centre();
    const double ring = std::max(radius * 0.17, 1.6);
    const double arcRadius = radius - ring / 2.;
    const double travel = static_cast<double>(toTravel(p, look.value));
    const double origin = p.minimum < 0.F && p.maximum > 0.F ? static_cast<double>(toTravel(p, 0.F)) : 0.;
    const Colour accent = look.enabled ? accentOf(p.section) : FaintInk;

    cairo_set_line_cap(context, CAIRO_LINE_CAP_BUTT);
    drawArc(context, c, arcRadius, 0., 1., Well, ring);
    if (std::abs(travel - origin) > 0.004) {
        drawArc(context, c, arcRadius, origin, travel, accent, ring);
    } else if (origin > 0.) {
        drawArc(context, c, arcRadius, origin - 0.008, origin + 0.008, accent, ring);
    }
    const double face = radius - ring - std::max(1.5 * u, 1.);
    cairo_pattern_t* shade = cairo_pattern_create_linear(c.x, c.y - face, c.x, c.y + face);
    const Colour top = KnobFace.mixed(Ink, look.hovered || look.active ? 0.16 : 0.07);
    const Colour bottom = KnobFace.mixed(KnobEdge, 0.35);
    cairo_pattern_add_color_stop_rgb(shade, 0., top.red, top.green, top.blue);
    cairo_pattern_add_color_stop_rgb(shade, 1., bottom.red, bottom.green, bottom.blue);
    cairo_new_path(context);
    cairo_arc(context, c.x, c.y, face, 0., 2. * std::numbers::pi);
    cairo_set_source(context, shade);
    cairo_fill_preserve(context);
    cairo_pattern_destroy(shade);
    setColour(context, KnobEdge);
    cairo_set_line_width(context, std::max(u, 0.8));
    cairo_stroke(context);

    const double angle = angleOf(travel);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(context, std::max(2.4 * u, 1.5));
    setColour(context, look.enabled ? Ink : DimInk);
    cairo_move_to(context, c.x + std::cos(angle) * face * 0.45, c.y + std::sin(angle) * face * 0.45);
    cairo_line_to(context, c.x + std::cos(angle) * face * 0.86, c.y + std::sin(angle) * face * 0.86);
    cairo_stroke(context);

    if (look.modulation) {
        const double at = angleOf(static_cast<double>(*look.modulation));
        cairo_arc(context, c.x + std::cos(at) * arcRadius, c.y + std::sin(at) * arcRadius,
                  std::max(ring * 0.5, 1.4), 0., 2. * std::numbers::pi);
        setColour(context, Cool.mixed(Ink, 0.35));
        cairo_fill(context);
    }
    if (look.focused) {
        drawFocus(context, area, u);
    }
}

void drawTriangle(cairo_t* context, Point centre, double size, double direction, Colour colour) {
    cairo_new_path(context);
    for (int i = 0; i < 3; ++i) {
        const double angle = direction + i * 2. * std::numbers::pi / 3.;
        cairo_line_to(context, centre.x + size * std::cos(angle), centre.y + size * std::sin(angle));
    }
    cairo_close_path(context);
    setColour(context, colour);
    cairo_fill(context);
}

void drawSelector(cairo_t* context, const PanelControl& control, const ControlLook& look, double u) {
    const bool wide = control.kind == ControlKind::PresetMenu;
    const Rect area = control.area;
    fillRoundedRect(context, area, 4. * u, look.hovered || look.active ? Well.mixed(KnobFace, 0.45) : Well);
    const double arrow = 8. * u;
    const double size = wide ? std::max(12. * u, 8.) : std::max(10.5 * u, 7.);
    drawText(context, {area.x + 5. * u, area.y, area.width - 10. * u - arrow, area.height}, look.text,
             {size, look.enabled ? Ink : DimInk, wide ? Align::Centre : Align::Left});
    drawTriangle(context, {area.right() - 4. * u - arrow / 2., area.centre().y - u * 0.5}, 3.4 * u,
                 std::numbers::pi / 2., look.hovered ? Ink : DimInk);
    if (look.focused) {
        drawFocus(context, area.inset(-1.), u);
    }
}

void drawStep(cairo_t* context, const PanelControl& control, const ControlLook& look, double u) {
    const bool forward = control.kind == ControlKind::NextPreset;
    if (look.hovered || look.active) {
        fillRoundedRect(context, control.area, 4. * u, Surface);
    }
    drawTriangle(context, control.area.centre(), 5. * u, forward ? 0. : std::numbers::pi,
                 look.hovered ? Ink : DimInk);
    if (look.focused) {
        drawFocus(context, control.area, u);
    }
}

void drawPower(cairo_t* context, const PanelControl& control, const ControlLook& look, double u) {
    const Point c = control.area.centre();
    const double radius = control.area.width * 0.27;
    const bool on = look.value > 0.5F;
    fillRoundedRect(context, control.area, 5. * u, look.hovered ? SurfaceEdge : Surface);
    setColour(context, on ? Warm : FaintInk);
    cairo_set_line_cap(context, CAIRO_LINE_CAP_ROUND);
    cairo_set_line_width(context, std::max(2. * u, 1.4));
    cairo_new_path(context);
    cairo_arc(context, c.x, c.y + u * 0.6, radius, -0.28 * std::numbers::pi, 1.28 * std::numbers::pi);
    cairo_stroke(context);
    cairo_move_to(context, c.x, c.y - radius * 1.15);
    cairo_line_to(context, c.x, c.y - radius * 0.1);
    cairo_stroke(context);
    if (look.focused) {
        drawFocus(context, control.area, u);
    }
}

} // namespace

void drawControl(cairo_t* context, const PanelControl& control, const ControlLook& look, double unit) {
    switch (control.kind) {
    case ControlKind::Knob:
        drawKnob(context, control, look, unit);
        break;
    case ControlKind::PresetMenu:
    case ControlKind::Selector:
        drawSelector(context, control, look, unit);
        break;
    case ControlKind::PreviousPreset:
    case ControlKind::NextPreset:
        drawStep(context, control, look, unit);
        break;
    case ControlKind::Power:
        drawPower(context, control, look, unit);
        break;
    }
}

} // namespace tonewright::effect
