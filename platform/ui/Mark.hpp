// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What moves in front of a drawn picture. A value; any thread.
#pragma once

#include "platform/ui/Canvas.hpp"

namespace platform {

/// A filled rectangle with round corners: a dot if the radius is half the width.
struct Mark {
    CGRect place;
    double radius = 0;
    Color color;

    friend bool operator==(const Mark&, const Mark&) = default;
};

/// Returns a mark that is a dot centred at `center`.
[[nodiscard]] inline Mark dotAt(Point center, double radius, const Color& color) noexcept {
    return {{center.x - radius, center.y - radius, 2 * radius, 2 * radius}, radius, color};
}

} // namespace platform
