// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An attack-decay-sustain-release envelope with exponential decay and release. A value; not shared by
// threads.
#pragma once

#include "ExactMath.hpp"

#include <algorithm>
#include <cstddef>

namespace tonewright::loops {

/// Times in seconds (decay and release to -60 dB), sustain from 0 to 1.
struct EnvelopeTimes {
    double attack = 0.003;
    double decay = 0.3;
    double sustain = 1.0;
    double release = 0.1;
};

class Envelope {
  public:
    Envelope(const EnvelopeTimes& times, std::size_t gateFrames, double rate)
        : gateFrames_(gateFrames)
        , rise_(1.0 / std::max(1.0, times.attack * rate))
        , decay_(decayFactor(times.decay, rate))
        , sustain_(times.sustain)
        , release_(decayFactor(std::max(times.release, 0.004), rate)) {}

    /// Gives the next frame's value, 0 to 1.
    double step() noexcept {
        if (frame_ >= gateFrames_) {
            value_ *= release_;
        } else if (rising_) {
            value_ += rise_;
            if (value_ >= 1.0) {
                value_ = 1.0;
                rising_ = false;
            }
        } else {
            value_ = sustain_ + (value_ - sustain_) * decay_;
        }
        ++frame_;
        return value_;
    }

    /// Says whether nothing more is to be heard.
    [[nodiscard]] bool ended() const noexcept {
        return value_ < 1e-4 && (frame_ > gateFrames_ || (!rising_ && sustain_ < 1e-4));
    }

  private:
    std::size_t gateFrames_;
    std::size_t frame_ = 0;
    double rise_;
    double decay_;
    double sustain_;
    double release_;
    double value_ = 0.0;
    bool rising_ = true;
};

} // namespace tonewright::loops
