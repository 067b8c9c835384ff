// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Points and rectangles of the panel, in window pixels.
#pragma once

#include <algorithm>
#include <cmath>

namespace tonewright::effect {

struct Point {
    double x = 0.;
    double y = 0.;
};

struct Rect {
    double x = 0.;
    double y = 0.;
    double width = 0.;
    double height = 0.;

    [[nodiscard]] bool empty() const noexcept { return width <= 0. || height <= 0.; }
    [[nodiscard]] double right() const noexcept { return x + width; }
    [[nodiscard]] double bottom() const noexcept { return y + height; }
    [[nodiscard]] Point centre() const noexcept { return {x + width / 2., y + height / 2.}; }
    [[nodiscard]] bool contains(Point p) const noexcept {
        return p.x >= x && p.x < right() && p.y >= y && p.y < bottom();
    }
    [[nodiscard]] Rect inset(double by) const noexcept {
        return {x + by, y + by, width - 2. * by, height - 2. * by};
    }
    [[nodiscard]] bool meets(const Rect& other) const noexcept {
        return x < other.right() && other.x < right() && y < other.bottom() && other.y < bottom();
    }
    [[nodiscard]] Rect united(const Rect& other) const noexcept {
        if (empty()) {
            return other;
        }
        if (other.empty()) {
            return *this;
        }
        const double left = std::min(x, other.x);
        const double top = std::min(y, other.y);
        return {left, top, std::max(right(), other.right()) - left, std::max(bottom(), other.bottom()) - top};
    }
    /// Returns the smallest rectangle of whole pixels that contains this one.
    [[nodiscard]] Rect snapped() const noexcept {
        const double left = std::floor(x);
        const double top = std::floor(y);
        return {left, top, std::ceil(right()) - left, std::ceil(bottom()) - top};
    }
};

} // namespace tonewright::effect
