// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Colours with the components red, green, blue and alpha, from 0 to 1. Values outside that range are kept
// unchanged. Immutable; any thread.
#pragma once

namespace platform {

class UIColor {
  public:
    constexpr UIColor(double red, double green, double blue, double alpha) noexcept
        : _red(red)
        , _green(green)
        , _blue(blue)
        , _alpha(alpha) {}

  private:
    friend class CIColor;
    double _red;
    double _green;
    double _blue;
    double _alpha;
};

/// Gives access to the components of a UIColor.
class CIColor {
  public:
    constexpr explicit CIColor(const UIColor& color) noexcept
        : _color(color) {}

    [[nodiscard]] constexpr double red() const noexcept { return _color._red; }
    [[nodiscard]] constexpr double green() const noexcept { return _color._green; }
    [[nodiscard]] constexpr double blue() const noexcept { return _color._blue; }
    [[nodiscard]] constexpr double alpha() const noexcept { return _color._alpha; }

  private:
    UIColor _color;
};

} // namespace platform
