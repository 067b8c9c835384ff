// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Theme.hpp"

#include <numbers>

namespace tonewright::effect {

Colour accentOf(Section section) noexcept {
    return section == Section::Envelope || section == Section::Onsets ? Cool : Warm;
}

const char* titleOf(Section section) noexcept {
    switch (section) {
    case Section::Drive:
        return "DRIVE";
    case Section::Filter:
        return "FILTER";
    case Section::Envelope:
        return "ENVELOPE";
    case Section::Resonator:
        return "RESONATOR";
    case Section::Onsets:
        return "ONSETS";
    case Section::Output:
        break;
    }
    return "OUTPUT";
}

void setColour(cairo_t* context, Colour colour) {
    cairo_set_source_rgba(context, colour.red, colour.green, colour.blue, colour.alpha);
}

void addRoundedRect(cairo_t* context, const Rect& rect, double radius) {
    constexpr double Quarter = std::numbers::pi / 2.;
    const double r = std::max(0., std::min({radius, rect.width / 2., rect.height / 2.}));
    cairo_new_sub_path(context);
    cairo_arc(context, rect.right() - r, rect.y + r, r, -Quarter, 0.);
    cairo_arc(context, rect.right() - r, rect.bottom() - r, r, 0., Quarter);
    cairo_arc(context, rect.x + r, rect.bottom() - r, r, Quarter, 2. * Quarter);
    cairo_arc(context, rect.x + r, rect.y + r, r, 2. * Quarter, 3. * Quarter);
    cairo_close_path(context);
}

void fillRoundedRect(cairo_t* context, const Rect& rect, double radius, Colour colour) {
    addRoundedRect(context, rect, radius);
    setColour(context, colour);
    cairo_fill(context);
}

void strokeRoundedRect(cairo_t* context, const Rect& rect, double radius, Colour colour, double width) {
    addRoundedRect(context, rect.inset(width / 2.), radius);
    setColour(context, colour);
    cairo_set_line_width(context, width);
    cairo_stroke(context);
}

void drawText(cairo_t* context, const Rect& box, std::string text, const TextStyle& style) {
    if (text.empty() || box.empty()) {
        return;
    }
    cairo_select_font_face(context, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           style.weight == Weight::Bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(context, style.size);
    cairo_text_extents_t extents{};
    cairo_text_extents(context, text.c_str(), &extents);
    if (extents.x_advance > box.width) {
        std::string cut;
        while (!text.empty() && extents.x_advance > box.width) {
            do { // removes a whole UTF-8 character
                text.pop_back();
            } while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0U) == 0x80U);
            cut = text + "\u2026";
            cairo_text_extents(context, cut.c_str(), &extents);
        }
        text = cut;
    }
    cairo_font_extents_t font{};
    cairo_font_extents(context, &font);
    double x = box.x;
    if (style.align == Align::Centre) {
        x += (box.width - extents.x_advance) / 2.;
    } else if (style.align == Align::Right) {
        x += box.width - extents.x_advance;
    }
    const double y = box.centre().y + (font.ascent - font.descent) / 2.;
    setColour(context, style.colour);
    cairo_move_to(context, std::round(x), std::round(y));
    cairo_show_text(context, text.c_str());
}

} // namespace tonewright::effect
