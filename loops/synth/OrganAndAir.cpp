// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Two simple instruments: an organ with nine drawbars, and noise with a pitch.

#include "Envelope.hpp"
#include "Filter.hpp"
#include "PitchPath.hpp"
#include "Random.hpp"
#include "Wavetable.hpp"

#include <array>

namespace tonewright::loops {

StereoBuffer renderOrgan(const OrganPatch& patch, const Note& note, double rate) {
    constexpr std::size_t BarCount = 9;
    constexpr std::array<double, BarCount> Ratios{.5, 1.5, 1, 2, 3, 4, 5, 6, 8};
    const std::array<double, BarCount> levels{patch.bar16, patch.bar5,  patch.bar8,  patch.bar4, patch.bar3,
                                              patch.bar2,  patch.bar17, patch.bar13, patch.bar1};
    const WaveCycle& sine = waveCycle(WaveShape::Sine, 440.0, rate);
    Random random(note.seed);
    PitchPath pitch(note, 0.03, {patch.vibrato, patch.vibratorate, 0.0}, rate);
    Envelope held({patch.attack, 1.0, 1.0, patch.release}, note.gateFrames, rate);
    StateVariableFilter clickTone;
    const FilterTuning clickTuning(2200.0, 0.3, rate);
    const double clickFall = decayFactor(0.012, rate);
    std::array<double, BarCount> phases{};
    double click = patch.click;
    double turns = 0.0;

    StereoBuffer sound;
    const auto most = static_cast<std::size_t>(LongestNoteSeconds * rate);
    for (std::size_t frame = 0; frame < most && !held.ended(); ++frame) {
        if (frame % ControlFrames == 0) {
            turns = frequencyOfNote(pitch.noteAt(frame)) / rate;
        }
        double value = 0.0;
        for (std::size_t bar = 0; bar < BarCount; ++bar) {
            if (levels[bar] > 0.0 && turns * Ratios[bar] < 0.45) {
                value += levels[bar] * sine.at(phases[bar]);
            }
            phases[bar] += turns * Ratios[bar];
            phases[bar] -= std::floor(phases[bar]);
        }
        const double hiss = clickTone.step(random.signedUnit(), clickTuning).band;
        value += hiss * (click + patch.leak);
        click *= clickFall;
        value *= held.step() * (0.5 + 0.5 * note.velocity) * 0.25;
        sound.left.push_back(value);
        sound.right.push_back(value);
    }
    return sound;
}

StereoBuffer renderAir(const AirPatch& patch, const Note& note, double rate) {
    Random random(note.seed);
    Envelope held({patch.attack, patch.decay, patch.sustain, patch.release}, note.gateFrames, rate);
    std::array<StateVariableFilter, 4> filters;
    FilterTuning tuning;
    const double start = random.unit();

    StereoBuffer sound;
    const auto most = static_cast<std::size_t>(LongestNoteSeconds * rate);
    for (std::size_t frame = 0; frame < most && !held.ended(); ++frame) {
        if (frame % ControlFrames == 0) {
            const double way =
                std::min(1.0, static_cast<double>(frame) / static_cast<double>(note.gateFrames));
            const double seconds = static_cast<double>(frame) / rate;
            const double waver = sineOfTurns(start + seconds * patch.flutterrate) +
                                 0.6 * sineOfTurns(2.7 * start + seconds * patch.flutterrate * 2.31);
            const double octaves =
                patch.sweep * way + patch.flutter * waver + patch.track * (note.note - 60.0) / 12.0;
            tuning = FilterTuning(patch.cutoff * powerOfTwo(octaves), patch.reso, rate);
        }
        const double left = random.signedUnit();
        const double other = random.signedUnit();
        const double right = patch.wide * other + (1.0 - patch.wide) * left;
        const double gain = held.step() * note.velocity * 0.5;
        const double damped = 0.4 + 0.6 * (1.0 - patch.reso);
        sound.left.push_back(gain * damped *
                             filters[1].step(filters[0].step(left, tuning).band, tuning).band);
        sound.right.push_back(gain * damped *
                              filters[3].step(filters[2].step(right, tuning).band, tuning).band);
    }
    return sound;
}

} // namespace tonewright::loops
