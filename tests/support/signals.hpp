// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Sound for tests, one channel at a time.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <vector>

namespace tonewright::test {

/// Returns a sine that starts `from` frames after a zero crossing.
[[nodiscard]] inline std::vector<float> sine(double hertz, double amplitude, std::size_t frames,
                                             double rate = 48000, double from = 0) {
    std::vector<float> sound(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        const double turns = hertz * (from + static_cast<double>(i)) / rate;
        sound[i] = static_cast<float>(amplitude * std::sin(2 * std::numbers::pi * turns));
    }
    return sound;
}

/// Returns the largest magnitude of a sound; infinity if a sample is not finite.
[[nodiscard]] inline float peak(const std::vector<float>& sound) {
    float most = 0;
    for (const float sample : sound) {
        most = std::isfinite(sample) ? std::max(most, std::abs(sample)) : HUGE_VALF;
    }
    return most;
}

} // namespace tonewright::test
