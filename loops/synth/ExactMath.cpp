// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "ExactMath.hpp"

#include <bit>
#include <cmath>
#include <cstdint>

namespace tonewright::loops {

double sineOfTurns(double turns) noexcept {
    double x = turns - std::floor(turns + 0.5); // in [-0.5, 0.5), exact
    if (x > 0.25) {
        x = 0.5 - x;
    } else if (x < -0.25) {
        x = -0.5 - x;
    }
    const double angle = x * (2.0 * Pi);
    const double square = angle * angle;
    // The Taylor series in nested form; the first omitted term is below 1e-15 at a right angle.
    double sum = 1.0;
    for (int order = 18; order >= 2; order -= 2) {
        sum = 1.0 - square / static_cast<double>(order * (order + 1)) * sum;
    }
    return angle * sum;
}

double cosineOfTurns(double turns) noexcept {
    return sineOfTurns(turns + 0.25);
}

double powerOfTwo(double exponent) noexcept {
    if (!(exponent > -1000.0)) {
        return 0.0;
    }
    if (exponent > 1000.0) {
        exponent = 1000.0;
    }
    const double whole = std::floor(exponent + 0.5);
    const double rest = (exponent - whole) * 0.69314718055994530942;
    double sum = 1.0;
    for (int order = 13; order >= 1; --order) {
        sum = 1.0 + rest / static_cast<double>(order) * sum;
    }
    const auto biased = static_cast<std::uint64_t>(static_cast<std::int64_t>(whole) + 1023);
    return sum * std::bit_cast<double>(biased << 52U);
}

double logarithmOfTwo(double value) noexcept {
    int exponent = 0;
    double mantissa = std::frexp(value, &exponent); // exact, in [0.5, 1)
    if (mantissa < 0.70710678118654752440) {
        mantissa *= 2.0;
        --exponent;
    }
    const double ratio = (mantissa - 1.0) / (mantissa + 1.0);
    const double square = ratio * ratio;
    double sum = 0.0;
    for (int order = 21; order >= 1; order -= 2) {
        sum = 1.0 / static_cast<double>(order) + square * sum;
    }
    return static_cast<double>(exponent) + 2.0 * ratio * sum * 1.44269504088896340736;
}

double exponential(double exponent) noexcept {
    return powerOfTwo(exponent * 1.44269504088896340736);
}

double gainOfDecibels(double decibels) noexcept {
    return powerOfTwo(decibels * 0.16609640474436811739);
}

double decibelsOfGain(double gain) noexcept {
    return logarithmOfTwo(gain > 1e-15 ? gain : 1e-15) / 0.16609640474436811739;
}

double frequencyOfNote(double note) noexcept {
    return 440.0 * powerOfTwo((note - 69.0) / 12.0);
}

double decayFactor(double seconds, double rate) noexcept {
    if (!(seconds * rate > 1.0)) {
        return 0.0;
    }
    return powerOfTwo(-9.96578428466208704576 / (seconds * rate)); // 60 dB is a factor of 1000 = 2^9.9658
}

double saturate(double value) noexcept {
    if (value >= 3.0) {
        return 1.0;
    }
    if (value <= -3.0) {
        return -1.0;
    }
    const double square = value * value;
    return value * (27.0 + square) / (27.0 + 9.0 * square);
}

} // namespace tonewright::loops
