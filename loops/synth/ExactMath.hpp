// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Elementary functions that return the same bits on every machine, because they use only IEEE additions,
// multiplications, divisions and exact scaling, in a fixed order. The results of the C library's functions
// differ in the last bit between versions, and feedback loops amplify the difference until checksums change.
// Accurate to about 1e-14. Pure functions, callable from any thread.
#pragma once

namespace tonewright::loops {

inline constexpr double Pi = 3.14159265358979323846;

/// Returns the sine of an angle counted in whole turns (0.25 is a right angle).
[[nodiscard]] double sineOfTurns(double turns) noexcept;

/// Returns the cosine of an angle counted in whole turns.
[[nodiscard]] double cosineOfTurns(double turns) noexcept;

/// Returns 2 to the power of `exponent`. Results below 2^-1000 become 0; exponents above 1000 are limited to
/// 1000.
[[nodiscard]] double powerOfTwo(double exponent) noexcept;

/// Returns the logarithm to base 2 of a positive, finite number.
[[nodiscard]] double logarithmOfTwo(double value) noexcept;

/// Returns e to the power of `exponent`.
[[nodiscard]] double exponential(double exponent) noexcept;

/// Returns the gain factor of a level in decibels.
[[nodiscard]] double gainOfDecibels(double decibels) noexcept;

/// Returns the level in decibels of a positive gain factor; factors below 1e-15 count as 1e-15.
[[nodiscard]] double decibelsOfGain(double gain) noexcept;

/// Returns the frequency in Hz of a MIDI note number (69 is A at 440 Hz); fractions are allowed.
[[nodiscard]] double frequencyOfNote(double note) noexcept;

/// Returns the factor per frame that makes a level fall by 60 dB in `seconds`.
[[nodiscard]] double decayFactor(double seconds, double rate) noexcept;

/// Saturates a signal smoothly at -1 and 1: near 0 the result is about `value`; from 3 upwards it is exactly
/// 1.
[[nodiscard]] double saturate(double value) noexcept;

} // namespace tonewright::loops
