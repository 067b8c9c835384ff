// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The colours and the text style of the panel, and its basic drawing functions.
#pragma once

#include "Geometry.hpp"
#include "effect/dsp/Parameters.hpp"

#include <cairo.h>

#include <string>

namespace tonewright::effect {

struct Colour {
    double red;
    double green;
    double blue;
    double alpha = 1.;

    [[nodiscard]] constexpr Colour withAlpha(double a) const noexcept { return {red, green, blue, a}; }
    /// Returns a mixture with `other`, whose share is 0..1.
    [[nodiscard]] constexpr Colour mixed(Colour other, double share) const noexcept {
        return {red + share * (other.red - red), green + share * (other.green - green),
                blue + share * (other.blue - blue), alpha + share * (other.alpha - alpha)};
    }
};

[[nodiscard]] constexpr Colour rgb(unsigned hex) noexcept {
    return {((hex >> 16U) & 0xFFU) / 255., ((hex >> 8U) & 0xFFU) / 255., (hex & 0xFFU) / 255.};
}

// Slate tones that suit light and dark desktops, with a warm and a cool accent colour.
inline constexpr Colour Background = rgb(0x2a2e35);
inline constexpr Colour Surface = rgb(0x343941);
inline constexpr Colour SurfaceEdge = rgb(0x424852);
inline constexpr Colour Well = rgb(0x1e2126);
inline constexpr Colour KnobFace = rgb(0x4a515c);
inline constexpr Colour KnobEdge = rgb(0x22262c);
inline constexpr Colour Ink = rgb(0xe9ebee);
inline constexpr Colour DimInk = rgb(0xa3abb7);
inline constexpr Colour FaintInk = rgb(0x6d7682);
inline constexpr Colour Warm = rgb(0xf2a154);
inline constexpr Colour Cool = rgb(0x66c3cf);
inline constexpr Colour Alarm = rgb(0xe8604c);

/// Returns the colour of a section's knobs: warm for sections that shape the sound, cool for those that
/// analyse it.
[[nodiscard]] Colour accentOf(Section section) noexcept;
[[nodiscard]] const char* titleOf(Section section) noexcept;

enum class Align { Left, Centre, Right };
enum class Weight { Normal, Bold };

struct TextStyle {
    double size = 11.;
    Colour colour = Ink;
    Align align = Align::Left;
    Weight weight = Weight::Normal;
};

void setColour(cairo_t* context, Colour colour);
void addRoundedRect(cairo_t* context, const Rect& rect, double radius);
void fillRoundedRect(cairo_t* context, const Rect& rect, double radius, Colour colour);
void strokeRoundedRect(cairo_t* context, const Rect& rect, double radius, Colour colour, double width);

/// Draws one line of text into a box, centred vertically. Text that is too wide is shortened and ends in an
/// ellipsis.
void drawText(cairo_t* context, const Rect& box, std::string text, const TextStyle& style);

} // namespace tonewright::effect
