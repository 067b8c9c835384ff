// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Frequency modulation: electric pianos, bells, glassy and hollow basses, reeds.

#include "Envelope.hpp"
#include "PitchPath.hpp"
#include "Wavetable.hpp"

#include <cmath>

namespace tonewright::loops {

namespace {

double wrapped(double phase) {
    return phase - std::floor(phase);
}

/// One stereo side of the sound: a carrier and its two modulators.
struct Operators {
    double carrier = 0.0;
    double first = 0.0;
    double second = 0.0;
    double last = 0.0;

    double step(const FmPatch& patch, const WaveCycle& sine, double turns, double index, double index2) {
        const double modulator = sine.at(wrapped(first + patch.feedback * 0.15 * last));
        last = modulator;
        const double bend = index * modulator + index2 * sine.at(second);
        const double value = sine.at(wrapped(carrier + bend / (2.0 * Pi)));
        carrier = wrapped(carrier + turns * patch.carrier);
        first = wrapped(first + turns * patch.ratio);
        second = wrapped(second + turns * patch.ratio2);
        return value;
    }
};

} // namespace

StereoBuffer renderFm(const FmPatch& patch, const Note& note, double rate) {
    const WaveCycle& sine = waveCycle(WaveShape::Sine, 440.0, rate);
    PitchPath pitch(note, patch.glide, {patch.vibrato, patch.vibratorate, patch.vibratodelay}, rate);
    Envelope loudness({patch.attack, patch.decay, patch.sustain, patch.release}, note.gateFrames, rate);
    const double fall = decayFactor(patch.indexdecay, rate);
    const double fall2 = decayFactor(patch.index2decay, rate);
    const double firmness = 1.0 - patch.touch * (1.0 - note.velocity);
    // The indices are lower for high notes, because their side bands would otherwise alias.
    const double height = std::min(1.0, powerOfTwo((72.0 - note.note) / 24.0));
    double index = patch.index * firmness;
    double index2 = patch.index2 * firmness;
    const double floorIndex = index * patch.indexfloor;
    Operators left;
    Operators right;
    double turns = 0.0;
    double apart = 1.0;

    StereoBuffer sound;
    const auto most = static_cast<std::size_t>(LongestNoteSeconds * rate);
    for (std::size_t frame = 0; frame < most && !loudness.ended(); ++frame) {
        if (frame % ControlFrames == 0) {
            turns = std::min(frequencyOfNote(pitch.noteAt(frame)) / rate, 0.45);
            apart = powerOfTwo(patch.detune / 2400.0);
        }
        const double gain = loudness.step() * note.velocity * 0.5;
        sound.left.push_back(gain * left.step(patch, sine, turns * apart, index * height, index2 * height));
        sound.right.push_back(gain * right.step(patch, sine, turns / apart, index * height, index2 * height));
        index = floorIndex + (index - floorIndex) * fall;
        index2 *= fall2;
    }
    return sound;
}

} // namespace tonewright::loops
