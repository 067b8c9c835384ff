// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An integer that can be any signed or unsigned 64-bit value. Any thread.
#pragma once

#include <compare>
#include <concepts>
#include <cstdint>
#include <string>

namespace platform {

class NSNumber {
  public:
    /// Creates the number 0.
    constexpr NSNumber() noexcept = default;
    template <std::signed_integral T>
    constexpr NSNumber(T value) noexcept // implicit, so that plain integers can be passed
        : _bits(static_cast<std::uint64_t>(value)) {}
    template <std::unsigned_integral T>
    constexpr NSNumber(T value) noexcept
        : _bits(value)
        , _isBeyondSigned(_bits > 0x7FFFFFFFFFFFFFFFU) {}

    /// Returns the value as a signed integer. A value beyond the signed range is reinterpreted bit by bit.
    [[nodiscard]] constexpr std::int64_t longLongValue() const noexcept {
        return static_cast<std::int64_t>(_bits);
    }
    [[nodiscard]] constexpr std::uint64_t unsignedLongLongValue() const noexcept { return _bits; }
    /// Returns whether the value is too large for a signed 64-bit integer.
    [[nodiscard]] constexpr bool isBeyondSigned() const noexcept { return _isBeyondSigned; }
    /// Returns the value in decimal.
    [[nodiscard]] std::string stringValue() const {
        return _isBeyondSigned ? std::to_string(_bits) : std::to_string(longLongValue());
    }

    friend constexpr bool operator==(const NSNumber&, const NSNumber&) = default;
    friend constexpr std::strong_ordering operator<=>(const NSNumber& a, const NSNumber& b) noexcept {
        if (a._isBeyondSigned != b._isBeyondSigned) return a._isBeyondSigned <=> b._isBeyondSigned;
        return a._isBeyondSigned ? a._bits <=> b._bits : a.longLongValue() <=> b.longLongValue();
    }

  private:
    std::uint64_t _bits = 0;
    bool _isBeyondSigned = false;
};

} // namespace platform
