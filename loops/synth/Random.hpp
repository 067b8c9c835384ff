// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reproducible random numbers: a seed gives the same numbers, integers and fractions, on every machine.
#pragma once

#include <cstdint>
#include <string_view>

namespace tonewright::loops {

/// Mixes text into a seed (FNV-1a, 64 bits), so that every track and row has a random stream of its own.
[[nodiscard]] constexpr std::uint64_t seedFrom(std::string_view text,
                                               std::uint64_t seed = 14695981039346656037ULL) noexcept {
    for (const char letter : text) {
        seed = (seed ^ static_cast<unsigned char>(letter)) * 1099511628211ULL;
    }
    return seed;
}

/// A stream of random numbers (SplitMix64). A value, not shared between threads.
class Random {
  public:
    explicit constexpr Random(std::uint64_t seed) noexcept
        : _state(seed) {}

    /// Returns the next 64 random bits.
    constexpr std::uint64_t bits() noexcept {
        _state += 0x9E3779B97F4A7C15ULL;
        std::uint64_t mixed = _state;
        mixed = (mixed ^ (mixed >> 30U)) * 0xBF58476D1CE4E5B9ULL;
        mixed = (mixed ^ (mixed >> 27U)) * 0x94D049BB133111EBULL;
        return mixed ^ (mixed >> 31U);
    }

    /// Returns a number in [0, 1).
    constexpr double unit() noexcept { return static_cast<double>(bits() >> 11U) * 0x1p-53; }

    /// Returns a number in [-1, 1), as one frame of white noise.
    constexpr double signedUnit() noexcept { return unit() * 2.0 - 1.0; }

  private:
    std::uint64_t _state;
};

} // namespace tonewright::loops
