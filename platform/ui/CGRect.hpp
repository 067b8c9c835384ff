// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A size and a rectangle in points (one point is one pixel at 100 % scale). x grows to the right, y
// downwards. Any thread.
#pragma once

#include <cmath>

namespace platform {

struct CGSize {
    double width = 0;
    double height = 0;

    friend bool operator==(const CGSize&, const CGSize&) = default;
};

struct CGRect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const CGRect&, const CGRect&) = default;
};

/// Returns the width as a positive number, even if `rect` stores a negative one.
[[nodiscard]] inline double CGRectGetWidth(const CGRect& rect) noexcept {
    return std::fabs(rect.width);
}

/// Returns the height as a positive number, even if `rect` stores a negative one.
[[nodiscard]] inline double CGRectGetHeight(const CGRect& rect) noexcept {
    return std::fabs(rect.height);
}

} // namespace platform
