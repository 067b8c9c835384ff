// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Follows the loudness of the input. Used on the audio thread; never allocates.
#pragma once

#include "Denormals.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::effect {

/// A peak follower whose reading is even to the ear.
class EnvelopeFollower {
  public:
    explicit EnvelopeFollower(double sampleRate) noexcept
        : sampleRate_{sampleRate} {}

    void reset() noexcept { level_ = 0.F; }

    /// Sets the time constants.
    void setTimes(float attackMilliseconds, float releaseMilliseconds) noexcept {
        if (attackMilliseconds != attackMilliseconds_ || releaseMilliseconds != releaseMilliseconds_) {
            attackMilliseconds_ = attackMilliseconds;
            releaseMilliseconds_ = releaseMilliseconds;
            attack_ = coefficient(attackMilliseconds);
            release_ = coefficient(releaseMilliseconds);
        }
    }

    /// Takes one stereo frame.
    void push(float left, float right) noexcept {
        const float peak = std::max(std::abs(left), std::abs(right));
        level_ += (peak > level_ ? attack_ : release_) * (peak - level_);
    }

    /// Returns 0 at -48 dB and below, 1 at full scale and above, evenly in decibels between.
    [[nodiscard]] float reading() noexcept {
        level_ = flushed(level_);
        const float decibels = 20.F * std::log10(level_ + 1e-6F);
        return std::clamp((decibels + 48.F) / 48.F, 0.F, 1.F);
    }

  private:
    [[nodiscard]] float coefficient(float milliseconds) const noexcept {
        return 1.F - std::exp(-1000.F / (milliseconds * static_cast<float>(sampleRate_)));
    }

    double sampleRate_;
    float attackMilliseconds_ = 0.F;
    float releaseMilliseconds_ = 0.F;
    float attack_ = 1.F;
    float release_ = 1.F;
    float level_ = 0.F;
};

} // namespace tonewright::effect
