// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Integer arithmetic that ends the program on overflow instead of wrapping around.
#pragma once

#include "platform/foundation/fatal.hpp"

#include <cstdint>

namespace platform {

/// Returns a + b. Overflow is a fatal error.
template <class T>
[[nodiscard]] constexpr T checkedAdd(T a, T b) {
    T sum{};
    if (__builtin_add_overflow(a, b, &sum)) fatal("Arithmetic overflow in an addition");
    return sum;
}

/// Returns a - b. Overflow is a fatal error.
template <class T>
[[nodiscard]] constexpr T checkedSubtract(T a, T b) {
    T difference{};
    if (__builtin_sub_overflow(a, b, &difference)) fatal("Arithmetic overflow in a subtraction");
    return difference;
}

/// Returns a * b. Overflow is a fatal error.
template <class T>
[[nodiscard]] constexpr T checkedMultiply(T a, T b) {
    T product{};
    if (__builtin_mul_overflow(a, b, &product)) fatal("Arithmetic overflow in a multiplication");
    return product;
}

/// Rounds `value` towards zero. NaN and values outside the signed 64-bit range are fatal errors.
[[nodiscard]] inline std::int64_t checkedInteger(double value) {
    if (!(value >= -0x1p63 && value < 0x1p63)) {
        fatal("A floating-point value does not fit into a 64-bit integer");
    }
    return static_cast<std::int64_t>(value);
}

} // namespace platform
