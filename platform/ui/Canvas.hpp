// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A surface for drawing lines, shapes and text. Lengths are in points; the origin is the surface's upper left
// corner, x grows to the right, y downwards. Drawing is clipped to the surface; calls with NaN or infinite
// values draw nothing. Main thread only.
#pragma once

#include "platform/ui/CGRect.hpp"

#include <span>
#include <string_view>

namespace platform {

/// A colour. Each component is from 0 to 1 and not premultiplied by alpha.
struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    /// Returns this colour with its alpha multiplied by `factor`.
    [[nodiscard]] Color faded(double factor) const noexcept { return {red, green, blue, alpha * factor}; }

    friend bool operator==(const Color&, const Color&) = default;
};

struct Point {
    double x = 0;
    double y = 0;
};

enum class TextAlignment { Leading, Center, Trailing };

class Canvas {
  public:
    /// The cairo side of a canvas. Only the platform knows its definition.
    struct Target;
    explicit Canvas(Target& target) noexcept
        : _target(target) {}

    [[nodiscard]] double width() const noexcept;
    [[nodiscard]] double height() const noexcept;
    /// Returns the colour of the desktop's text: dark on a light desktop, light on a dark one.
    [[nodiscard]] Color textColor() const noexcept;

    void fillRectangle(const CGRect& rectangle, const Color& color);
    void fillCircle(Point center, double radius, const Color& color);
    /// Draws a line with round ends through `points`, `thickness` wide.
    void strokeLine(std::span<const Point> points, double thickness, const Color& color);
    void strokeRectangle(const CGRect& rectangle, double thickness, const Color& color);
    /// Draws one line of text in the desktop's font, `size` points high and vertically centred in `place`.
    /// Text that is wider than `place` is shortened.
    void drawText(std::string_view text, const CGRect& place, double size, const Color& color,
                  TextAlignment alignment = TextAlignment::Leading);

  private:
    Target& _target;
};

} // namespace platform
