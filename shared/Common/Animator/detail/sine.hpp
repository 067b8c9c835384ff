// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Inline sine and cosine for the angles that occur in a movement, from 0 to pi. They are faster than a call
// of the C library.
//
// The polynomials are those of glibc (the optimized routines for sinf and cosf published by Arm), evaluated
// with fewer operations. For all floats in the range, the results have been compared with sinf and cosf of
// glibc and have the same bits; `./bench easing` compares the angles that it uses. For other angles, which
// occur only for frames outside a movement, the C library is called.
#pragma once

#include <bit>
#include <cmath>
#include <cstdint>
#include <numbers>

namespace tonewright::easing {

/// Returns the cosine of `x`, |x| <= pi/4, from its square.
[[nodiscard]] inline double cosineBySquare(double square) noexcept {
    const double high = -0x1.6c087e89a359dp-10 + square * 0x1.99343027bf8c3p-16;
    return 1 + square * (-0x1.ffffffd0c621cp-2 + square * (0x1.55553e1068f19p-5 + square * high));
}

/// Returns the sine of `x`, |x| <= pi/4.
[[nodiscard]] inline double sineBySquare(double x) noexcept {
    const double square = x * x;
    const double high = 0x1.1107605230bc4p-7 + square * -0x1.994eb3774cf24p-13;
    return x + x * square * (-0x1.555545995a603p-3 + square * high);
}

// The bounds between the polynomials, as bits. The order of non-negative floats is that of their bits, and
// the bits of negative floats are larger, so that one integer comparison also excludes negative angles.
[[nodiscard]] constexpr std::uint32_t bitsOf(float x) noexcept {
    return std::bit_cast<std::uint32_t>(x);
}
inline constexpr double Pi64 = std::numbers::pi;
inline constexpr std::uint32_t FirstOctant = bitsOf(static_cast<float>(Pi64 / 4));     // exclusive
inline constexpr std::uint32_t ThirdOctant = bitsOf(static_cast<float>(3 * Pi64 / 4)); // exclusive
inline constexpr std::uint32_t HalfTurn = bitsOf(std::numbers::pi_v<float>);           // inclusive

/// Returns the cosine of any `x` in radians.
[[nodiscard]] inline float cosine(float x) noexcept {
    const std::uint32_t bits = bitsOf(x);
    const double angle = static_cast<double>(x);
    if (bits < FirstOctant) return static_cast<float>(cosineBySquare(angle * angle));
    if (bits < ThirdOctant) return static_cast<float>(sineBySquare(Pi64 / 2 - angle));
    if (bits <= HalfTurn) return -static_cast<float>(cosineBySquare((angle - Pi64) * (angle - Pi64)));
    return std::cos(x);
}

/// Returns the sine of any `x` in radians.
[[nodiscard]] inline float sine(float x) noexcept {
    const std::uint32_t bits = bitsOf(x);
    const double angle = static_cast<double>(x);
    if (bits < FirstOctant) return static_cast<float>(sineBySquare(angle));
    if (bits < ThirdOctant) {
        return static_cast<float>(cosineBySquare((angle - Pi64 / 2) * (angle - Pi64 / 2)));
    }
    if (bits <= HalfTurn) return static_cast<float>(sineBySquare(Pi64 - angle));
    return std::sin(x);
}

} // namespace tonewright::easing
