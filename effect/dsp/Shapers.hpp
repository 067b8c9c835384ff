// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The curves of the drive stage. They are defined for every finite input and stay within about +-1 (Tube:
// down to -2).
#pragma once

#include "Parameters.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::effect {

/// Approximates tanh by a rational function that reaches +-1 at +-3.
[[nodiscard]] inline float softClip(float x) noexcept {
    const float inside = std::clamp(x, -3.F, 3.F);
    const float square = inside * inside;
    return inside * (27.F + square) / (27.F + 9.F * square);
}

/// Applies the curve to one sample.
template <Shape S>
[[nodiscard]] inline float shaped(float x) noexcept {
    if constexpr (S == Shape::Warm) {
        return softClip(x);
    } else if constexpr (S == Shape::Tube) { // saturates earlier for positive than for negative input
        const float positive = std::max(x, 0.F);
        const float negative = std::min(x, 0.F);
        return positive / (1.F + positive) + negative / (1.F - 0.5F * negative);
    } else if constexpr (S == Shape::Clip) {
        return std::clamp(x, -1.F, 1.F);
    } else if constexpr (S == Shape::Fold) { // a triangle wave of the input, rounded towards a sine
        const float turns = 0.25F * x + 0.25F;
        const float triangle = 4.F * std::abs(turns - std::floor(turns) - 0.5F) - 1.F;
        return -triangle * (1.5F - 0.5F * triangle * triangle);
    } else if constexpr (S == Shape::Octave) { // mostly rectified, which adds the octave above
        const float soft = softClip(x);
        return 0.3F * soft + 0.7F * std::abs(soft);
    } else {
        return x;
    }
}

/// Calls `use` with the curve as a compile-time constant: `use.template operator()<Shape::...>()`.
template <typename Use>
decltype(auto) withShape(Shape shape, Use&& use) {
    switch (shape) {
    case Shape::Warm:
        return use.template operator()<Shape::Warm>();
    case Shape::Tube:
        return use.template operator()<Shape::Tube>();
    case Shape::Clip:
        return use.template operator()<Shape::Clip>();
    case Shape::Fold:
        return use.template operator()<Shape::Fold>();
    case Shape::Octave:
        return use.template operator()<Shape::Octave>();
    case Shape::Clean:
        break;
    }
    return use.template operator()<Shape::Clean>();
}

/// Applies a curve that is known only at run time to one sample.
[[nodiscard]] inline float shaped(Shape shape, float x) noexcept {
    return withShape(shape, [x]<Shape S>() { return shaped<S>(x); });
}

} // namespace tonewright::effect
