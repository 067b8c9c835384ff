// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Elementary functions that give the same bits on every machine: nothing but IEEE additions, multiplications,
// divisions and exact scaling, in a fixed order. The C library's own differ in the last bit from one version
// to the next, and a feedback loop makes that audible in a checksum. Accurate to about 1e-14. Pure functions;
// any thread.
#pragma once

namespace tonewright::loops {

inline constexpr double Pi = 3.14159265358979323846;

/// Returns the sine of an angle counted in whole turns (0.25 is a right angle).
[[nodiscard]] double sineOfTurns(double turns) noexcept;

/// Returns the cosine of an angle counted in whole turns.
[[nodiscard]] double cosineOfTurns(double turns) noexcept;

/// Returns 2 to the power of `exponent`; results below 2^-1000 become 0, exponents above 1000 count as 1000.
[[nodiscard]] double powerOfTwo(double exponent) noexcept;

/// Returns the logarithm to base 2 of a positive, finite number.
[[nodiscard]] double logarithmOfTwo(double value) noexcept;

/// Returns e to the power of `exponent`.
[[nodiscard]] double exponential(double exponent) noexcept;

/// Returns the factor for a level in decibels.
[[nodiscard]] double gainOfDecibels(double decibels) noexcept;

/// Returns the level in decibels of a positive factor; anything below 1e-15 counts as 1e-15.
[[nodiscard]] double decibelsOfGain(double gain) noexcept;

/// Returns the frequency in Hz of a MIDI note number (69 is A at 440 Hz); fractions are allowed.
[[nodiscard]] double frequencyOfNote(double note) noexcept;

/// Returns the factor per frame with which something falls by 60 dB in `seconds`.
[[nodiscard]] double decayFactor(double seconds, double rate) noexcept;

/// Bends a signal towards -1 and 1 without an edge: x at 0, exactly 1 from 3 upwards.
[[nodiscard]] double saturate(double value) noexcept;

} // namespace tonewright::loops
