// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The pitch of a note over time: its slides and its vibrato, read once per control period.
#pragma once

#include "ExactMath.hpp"
#include "Instrument.hpp"

#include <algorithm>

namespace tonewright::loops {

/// Frames between two readings of slowly moving values.
inline constexpr std::size_t ControlFrames = 16;

/// The longest a single note may ring, in seconds; a guard against patches that never fall silent.
inline constexpr double LongestNoteSeconds = 40.0;

struct Vibrato {
    double cents = 0.0;
    double rate = 5.0;         // Hz
    double delaySeconds = 0.0; // until it sets in, over as long again
};

class PitchPath {
  public:
    PitchPath(const Note& note, double glideSeconds, const Vibrato& vibrato, double rate)
        : slides_(&note.slides)
        , current_(note.note)
        , from_(note.note)
        , target_(note.note)
        , glideFrames_(std::max(1.0, glideSeconds * rate))
        , vibrato_(vibrato)
        , rate_(rate) {}

    /// Gives the MIDI note number at `frame`; frames must not go backwards.
    double noteAt(std::size_t frame) noexcept {
        while (next_ < slides_->size() && (*slides_)[next_].frame <= frame) {
            from_ = current_;
            target_ = (*slides_)[next_].note;
            since_ = (*slides_)[next_].frame;
            ++next_;
        }
        const double way = std::min(1.0, static_cast<double>(frame - since_) / glideFrames_);
        current_ = from_ + (target_ - from_) * way * (2.0 - way);
        if (vibrato_.cents == 0.0) {
            return current_;
        }
        const double seconds = static_cast<double>(frame) / rate_;
        const double delay = std::max(vibrato_.delaySeconds, 0.001);
        const double depth = std::clamp((seconds - delay) / delay, 0.0, 1.0);
        return current_ + vibrato_.cents * 0.01 * depth * sineOfTurns(seconds * vibrato_.rate);
    }

  private:
    const std::vector<Slide>* slides_;
    std::size_t next_ = 0;
    std::size_t since_ = 0;
    double current_;
    double from_;
    double target_;
    double glideFrames_;
    Vibrato vibrato_;
    double rate_;
};

} // namespace tonewright::loops
