// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Subtractive synthesis: basses, leads, pads, strings, brass, voices.

#include "Envelope.hpp"
#include "Filter.hpp"
#include "PitchPath.hpp"
#include "Random.hpp"
#include "Wavetable.hpp"

#include <array>

namespace tonewright::loops {

namespace {

constexpr std::size_t MostOscillators = 9;

struct Oscillator {
    WaveShape shape = WaveShape::Saw;
    double offset = 0.0; // semitones
    double phase = 0.0;
    double step = 0.0;
    double left = 0.7;
    double right = 0.7;
    const WaveCycle* cycle = nullptr;

    void tune(double note, double rate) {
        const double frequency = frequencyOfNote(note + offset);
        step = std::min(frequency / rate, 0.49);
        cycle = &waveCycle(shape, frequency, rate);
    }

    double next(double width) noexcept {
        double value = cycle->at(phase);
        if (shape == WaveShape::Square && width != 0.5) { // the average of two shifted squares is a pulse
            const double other = phase + 0.5 - width;
            value = 0.5 * (value + cycle->at(other - std::floor(other)));
        }
        phase += step;
        if (phase >= 1.0) {
            phase -= 1.0;
        }
        return value;
    }
};

struct Bank {
    std::array<Oscillator, MostOscillators> items;
    std::size_t count = 0;

    void add(WaveShape shape, double offset, double gain, double pan, double phase) {
        Oscillator& one = items[count++];
        one.shape = shape;
        one.offset = offset;
        one.phase = phase;
        one.left = gain * std::min(1.0, 1.0 - pan);
        one.right = gain * std::min(1.0, 1.0 + pan);
    }
};

WaveShape shapeOf(double number) {
    return static_cast<WaveShape>(static_cast<int>(std::clamp(number, 0.0, 3.0)));
}

Bank oscillators(const SubtractivePatch& patch, Random& random) {
    Bank bank;
    const auto copies = static_cast<std::size_t>(std::clamp(patch.unison, 1.0, 7.0));
    const double gain = 1.0 / std::sqrt(static_cast<double>(copies));
    for (std::size_t copy = 0; copy < copies; ++copy) {
        const double place =
            copies == 1 ? 0.0 : 2.0 * static_cast<double>(copy) / static_cast<double>(copies - 1) - 1.0;
        // Adjacent pitches go to opposite sides, so that neither side sounds sharp.
        const double side = copies == 1 ? 0.0 : (copy % 2 == 0 ? 1.0 : -1.0) * (1.0 - 0.4 * std::fabs(place));
        bank.add(shapeOf(patch.shape), place * patch.detune * 0.01, gain, side * patch.spread,
                 copies == 1 ? 0.0 : random.unit());
    }
    if (patch.mix2 > 0.0) {
        bank.add(shapeOf(patch.shape2), patch.tune2, patch.mix2, 0.0, 0.25);
    }
    if (patch.sub > 0.0) {
        bank.add(WaveShape::Sine, -12.0, patch.sub, 0.0, 0.0);
    }
    return bank;
}

/// Three resonances of a sung vowel; `vowel` interpolates between five vowels.
struct Formants {
    std::array<FilterTuning, 3> tunings;
    std::array<double, 3> gains{1.0, 0.6, 0.3};
    std::array<StateVariableFilter, 3> left;
    std::array<StateVariableFilter, 3> right;

    Formants(double vowel, double rate) {
        constexpr std::array<std::array<double, 3>, 6> Frequencies{{{800, 1150, 2900},
                                                                    {480, 1700, 2600},
                                                                    {320, 2150, 3000},
                                                                    {450, 800, 2830},
                                                                    {325, 700, 2700},
                                                                    {325, 700, 2700}}};
        const auto index = static_cast<std::size_t>(std::clamp(vowel, 0.0, 4.0));
        const double part = std::clamp(vowel, 0.0, 4.0) - static_cast<double>(index);
        for (std::size_t band = 0; band < 3; ++band) {
            const double low = Frequencies[index][band];
            tunings[band] = FilterTuning(low + (Frequencies[index + 1][band] - low) * part, 0.93, rate);
        }
    }

    static double pass(double input, std::array<StateVariableFilter, 3>& filters, const Formants& shape) {
        double sum = 0.1 * input;
        for (std::size_t band = 0; band < 3; ++band) {
            sum += shape.gains[band] * 0.5 * filters[band].step(input, shape.tunings[band]).band;
        }
        return sum;
    }
};

/// The filter's envelope: rises during its attack, then falls for the rest of the note.
class SweepEnvelope {
  public:
    SweepEnvelope(const SubtractivePatch& patch, double rate)
        : _rise(1.0 / std::max(1.0, patch.sweepattack * rate))
        , _fall(decayFactor(patch.sweepdecay, rate)) {}

    double step() noexcept {
        if (_rising) {
            _value += _rise;
            if (_value >= 1.0) {
                _value = 1.0;
                _rising = false;
            }
        } else {
            _value *= _fall;
        }
        return _value;
    }

  private:
    double _rise;
    double _fall;
    double _value = 0.0;
    bool _rising = true;
};

} // namespace

StereoBuffer renderSubtractive(const SubtractivePatch& patch, const Note& note, double rate) {
    Random random(note.seed);
    Bank bank = oscillators(patch, random);
    PitchPath pitch(note, patch.glide, {patch.vibrato, patch.vibratorate, patch.vibratodelay}, rate);
    Envelope loudness({patch.attack, patch.decay, patch.sustain, patch.release}, note.gateFrames, rate);
    SweepEnvelope sweep(patch, rate);
    std::array<StateVariableFilter, 4> filters;
    std::array<StateVariableFilter, 2> highpass;
    Formants formants(patch.vowel, rate);
    FilterTuning tuning;
    const FilterTuning highTuning(std::max(patch.highpass, 12.0), 0.0, rate);
    const double touch = patch.touch * (note.velocity - 0.7);
    const double push = 1.0 + 7.0 * patch.drive;
    const double makeUp = 1.0 / (1.0 + 2.2 * patch.drive);
    const bool steep = patch.poles > 2.0;

    StereoBuffer sound;
    const auto most = static_cast<std::size_t>(LongestNoteSeconds * rate);
    for (std::size_t frame = 0; frame < most && !loudness.ended(); ++frame) {
        const double opening = sweep.step();
        if (frame % ControlFrames == 0) {
            const double pitchNow = pitch.noteAt(frame);
            for (std::size_t index = 0; index < bank.count; ++index) {
                bank.items[index].tune(pitchNow, rate);
            }
            const double octaves = patch.sweep * opening * (0.4 + 0.6 * note.velocity) + touch +
                                   patch.track * (pitchNow - 60.0) / 12.0;
            tuning = FilterTuning(patch.cutoff * powerOfTwo(octaves), patch.reso, rate);
        }
        StereoFrame value;
        for (std::size_t index = 0; index < bank.count; ++index) {
            const double wave = bank.items[index].next(patch.width);
            value.left += wave * bank.items[index].left;
            value.right += wave * bank.items[index].right;
        }
        if (patch.noise > 0.0) {
            value.left += patch.noise * random.signedUnit();
            value.right += patch.noise * random.signedUnit();
        }
        if (patch.drive > 0.0) {
            value.left = saturate(value.left * push) * makeUp * 1.6;
            value.right = saturate(value.right * push) * makeUp * 1.6;
        }
        value.left = filters[0].step(value.left, tuning).low;
        value.right = filters[1].step(value.right, tuning).low;
        if (steep) {
            value.left = filters[2].step(value.left, tuning).low;
            value.right = filters[3].step(value.right, tuning).low;
        }
        if (patch.vowel >= 0.0) {
            value.left = Formants::pass(value.left, formants.left, formants);
            value.right = Formants::pass(value.right, formants.right, formants);
        }
        if (patch.highpass > 0.0) {
            value.left = highpass[0].step(value.left, highTuning).high;
            value.right = highpass[1].step(value.right, highTuning).high;
        }
        const double gain = loudness.step() * note.velocity * 0.35;
        sound.left.push_back(value.left * gain);
        sound.right.push_back(value.right * gain);
    }
    return sound;
}

} // namespace tonewright::loops
