// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A shape that is painted over a view's drawing and can be moved without repainting the whole view. Any
// thread.
#pragma once

#include "platform/ui/Canvas.hpp"

namespace platform {

/// A filled rectangle with round corners. With equal sides and a radius of half a side it is a dot.
struct Mark {
    CGRect place;
    double radius = 0;
    Color color;

    friend bool operator==(const Mark&, const Mark&) = default;
};

/// Returns a dot whose centre is `center`.
[[nodiscard]] inline Mark dotAt(Point center, double radius, const Color& color) noexcept {
    return {{center.x - radius, center.y - radius, 2 * radius, 2 * radius}, radius, color};
}

} // namespace platform
