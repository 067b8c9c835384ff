// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An attack-decay-sustain-release envelope with exponential decay and release. A value, not shared between
// threads.
#pragma once

#include "ExactMath.hpp"

#include <algorithm>
#include <cstddef>

namespace tonewright::loops {

/// Times in seconds (decay and release: time to fall by 60 dB); sustain from 0 to 1.
struct EnvelopeTimes {
    double attack = 0.003;
    double decay = 0.3;
    double sustain = 1.0;
    double release = 0.1;
};

class Envelope {
  public:
    Envelope(const EnvelopeTimes& times, std::size_t gateFrames, double rate)
        : _gateFrames(gateFrames)
        , _rise(1.0 / std::max(1.0, times.attack * rate))
        , _decay(decayFactor(times.decay, rate))
        , _sustain(times.sustain)
        , _release(decayFactor(std::max(times.release, 0.004), rate)) {}

    /// Returns the next frame's value, 0 to 1.
    double step() noexcept {
        if (_frame >= _gateFrames) {
            _value *= _release;
        } else if (_rising) {
            _value += _rise;
            if (_value >= 1.0) {
                _value = 1.0;
                _rising = false;
            }
        } else {
            _value = _sustain + (_value - _sustain) * _decay;
        }
        ++_frame;
        return _value;
    }

    /// Returns whether the rest of the envelope is inaudible.
    [[nodiscard]] bool ended() const noexcept {
        return _value < 1e-4 && (_frame > _gateFrames || (!_rising && _sustain < 1e-4));
    }

  private:
    std::size_t _gateFrames;
    std::size_t _frame = 0;
    double _rise;
    double _decay;
    double _sustain;
    double _release;
    double _value = 0.0;
    bool _rising = true;
};

} // namespace tonewright::loops
