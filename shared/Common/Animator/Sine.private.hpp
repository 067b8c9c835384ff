// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Sine and cosine for the angles that a movement passes through, from 0 to pi, inline: half the cost of a
// call into the C library. Private to the animation engine.
//
// The polynomials are the ones that glibc evaluates (the optimized routines for sinf and cosf that Arm
// publishes), so that every float of the range gives the bits of glibc's sinf and cosf; `./bench easing`
// compares them on the way. Other angles, which only frames outside a movement have, go to the library.
#pragma once

#include <cmath>
#include <numbers>

namespace tonewright::easing {

/// Give the cosine of `x`, |x| <= pi/4, from its square.
[[nodiscard]] inline double cosineBySquare(double square) noexcept {
    const double low = 1 + square * -0x1.ffffffd0c621cp-2;
    const double high = -0x1.6c087e89a359dp-10 + square * 0x1.99343027bf8c3p-16;
    const double fourth = square * square;
    return (low + fourth * 0x1.55553e1068f19p-5) + fourth * square * high;
}

/// Give the sine of `x`, |x| <= pi/4.
[[nodiscard]] inline double sineBySquare(double x) noexcept {
    const double square = x * x;
    const double high = 0x1.1107605230bc4p-7 + square * -0x1.994eb3774cf24p-13;
    const double cube = x * square;
    return (x + cube * -0x1.555545995a603p-3) + cube * square * high;
}

/// Give the cosine of `x`, in radians; any value.
[[nodiscard]] inline float cosine(float x) noexcept {
    constexpr double Pi = std::numbers::pi;
    if (!(x >= 0 && x <= std::numbers::pi_v<float>)) return std::cos(x);
    const double angle = static_cast<double>(x);
    if (angle < Pi / 4) return static_cast<float>(cosineBySquare(angle * angle));
    if (angle < 3 * Pi / 4) return -static_cast<float>(sineBySquare(angle - Pi / 2));
    return -static_cast<float>(cosineBySquare((angle - Pi) * (angle - Pi)));
}

/// Give the sine of `x`, in radians; any value.
[[nodiscard]] inline float sine(float x) noexcept {
    constexpr double Pi = std::numbers::pi;
    if (!(x >= 0 && x <= std::numbers::pi_v<float>)) return std::sin(x);
    const double angle = static_cast<double>(x);
    if (angle < Pi / 4) return static_cast<float>(sineBySquare(angle));
    if (angle < 3 * Pi / 4) return static_cast<float>(cosineBySquare((angle - Pi / 2) * (angle - Pi / 2)));
    return -static_cast<float>(sineBySquare(angle - Pi));
}

} // namespace tonewright::easing
