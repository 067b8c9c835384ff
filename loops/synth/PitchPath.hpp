// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The pitch of a note over time (its slides and vibrato), updated once per control period.
#pragma once

#include "ExactMath.hpp"
#include "Instrument.hpp"

#include <algorithm>

namespace tonewright::loops {

/// Frames between two updates of slowly changing values.
inline constexpr std::size_t ControlFrames = 16;

/// The longest duration of a note in seconds, in case a patch never becomes silent.
inline constexpr double LongestNoteSeconds = 40.0;

struct Vibrato {
    double cents = 0.0;
    double rate = 5.0;         // Hz
    double delaySeconds = 0.0; // until the vibrato begins; it then takes as long again to reach full depth
};

class PitchPath {
  public:
    PitchPath(const Note& note, double glideSeconds, const Vibrato& vibrato, double rate)
        : _slides(&note.slides)
        , _current(note.note)
        , _from(note.note)
        , _target(note.note)
        , _glideFrames(std::max(1.0, glideSeconds * rate))
        , _vibrato(vibrato)
        , _rate(rate) {}

    /// Returns the MIDI note number at `frame`; `frame` must not decrease from call to call.
    double noteAt(std::size_t frame) noexcept {
        while (_next < _slides->size() && (*_slides)[_next].frame <= frame) {
            _from = _current;
            _target = (*_slides)[_next].note;
            _since = (*_slides)[_next].frame;
            ++_next;
        }
        const double way = std::min(1.0, static_cast<double>(frame - _since) / _glideFrames);
        _current = _from + (_target - _from) * way * (2.0 - way);
        if (_vibrato.cents == 0.0) {
            return _current;
        }
        const double seconds = static_cast<double>(frame) / _rate;
        const double delay = std::max(_vibrato.delaySeconds, 0.001);
        const double depth = std::clamp((seconds - delay) / delay, 0.0, 1.0);
        return _current + _vibrato.cents * 0.01 * depth * sineOfTurns(seconds * _vibrato.rate);
    }

  private:
    const std::vector<Slide>* _slides;
    std::size_t _next = 0;
    std::size_t _since = 0;
    double _current;
    double _from;
    double _target;
    double _glideFrames;
    Vibrato _vibrato;
    double _rate;
};

} // namespace tonewright::loops
