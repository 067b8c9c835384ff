// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Follows the level of the input. Used on the audio thread; never allocates.
#pragma once

#include "Denormals.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::effect {

/// A peak follower whose reading is linear in decibels.
class EnvelopeFollower {
  public:
    explicit EnvelopeFollower(double sampleRate) noexcept
        : _sampleRate{sampleRate} {}

    void reset() noexcept { _level = 0.F; }

    /// Sets the time constants.
    void setTimes(float attackMilliseconds, float releaseMilliseconds) noexcept {
        if (attackMilliseconds != _attackMilliseconds || releaseMilliseconds != _releaseMilliseconds) {
            _attackMilliseconds = attackMilliseconds;
            _releaseMilliseconds = releaseMilliseconds;
            _attack = coefficient(attackMilliseconds);
            _release = coefficient(releaseMilliseconds);
        }
    }

    /// Processes one stereo frame.
    void push(float left, float right) noexcept {
        const float peak = std::max(std::abs(left), std::abs(right));
        _level += (peak > _level ? _attack : _release) * (peak - _level);
    }

    /// Returns 0 at -48 dB and below, 1 at full scale and above, and a value linear in decibels in between.
    [[nodiscard]] float reading() noexcept {
        _level = flushed(_level);
        const float decibels = 20.F * std::log10(_level + 1e-6F);
        return std::clamp((decibels + 48.F) / 48.F, 0.F, 1.F);
    }

  private:
    [[nodiscard]] float coefficient(float milliseconds) const noexcept {
        return 1.F - std::exp(-1000.F / (milliseconds * static_cast<float>(_sampleRate)));
    }

    double _sampleRate;
    float _attackMilliseconds = 0.F;
    float _releaseMilliseconds = 0.F;
    float _attack = 1.F;
    float _release = 1.F;
    float _level = 0.F;
};

} // namespace tonewright::effect
