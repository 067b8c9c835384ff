// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Test signals, and functions that run the effect's processor on them.
#pragma once

#include "effect/dsp/Denormals.hpp"
#include "effect/dsp/Processor.hpp"
#include "tests/support/signals.hpp"
#include "tests/support/testing.hpp"

namespace tonewright::effect::test {

using Signal = std::vector<float>;
using tonewright::test::peak;
using tonewright::test::sine;

inline constexpr double Rate = 48000.;

[[nodiscard]] inline ParameterValues changed(ParameterValues values,
                                             std::initializer_list<std::pair<Parameter, float>> changes) {
    for (const auto& [parameter, value] : changes) values[index(parameter)] = value;
    return values;
}

/// Returns settings with which the effect only delays the sound.
[[nodiscard]] inline ParameterValues transparent() {
    return changed(defaultValues(),
                   {{Parameter::Shape, 0.F}, {Parameter::FilterMode, 0.F}, {Parameter::ResonatorMix, 0.F}});
}

[[nodiscard]] inline Signal noise(float amplitude, std::size_t frames, std::uint32_t seed = 1) {
    Signal signal(frames);
    for (float& sample : signal) {
        seed = seed * 1664525U + 1013904223U;
        sample = amplitude * (static_cast<float>(seed >> 8U) / 8388608.F - 1.F);
    }
    return signal;
}

/// Returns decaying tones that start at the frames `at` with these levels, over a faint noise floor.
[[nodiscard]] inline Signal strokes(const std::vector<std::size_t>& at, const std::vector<float>& levels,
                                    std::size_t frames, double hertz) {
    Signal signal = noise(0.0005F, frames);
    for (std::size_t s = 0; s < at.size(); ++s) {
        for (std::size_t i = at[s]; i < frames; ++i) {
            const double t = static_cast<double>(i - at[s]) / Rate;
            signal[i] += levels[s] *
                         static_cast<float>(std::exp(-14. * t) * std::sin(2. * std::numbers::pi * hertz * t));
        }
    }
    return signal;
}

struct Rendered {
    Signal left, right;
    std::vector<OutgoingMidi> midi; ///< with frames counted from the start of the signal
};

/// Called before each block.
using BeforeBlock = std::function<void(Processor&, std::size_t frame)>;

[[nodiscard]] inline Rendered render(Processor& processor, const Signal& in, std::size_t block,
                                     const BeforeBlock& before = {}) {
    const FlushDenormals flush;
    Rendered out{Signal(in.size()), Signal(in.size()), {}};
    MidiOutbox outbox;
    for (std::size_t at = 0; at < in.size(); at += block) {
        if (before) before(processor, at);
        const std::size_t frames = std::min(block, in.size() - at);
        outbox.beginBlock(MidiOutbox::Capacity);
        processor.process(in.data() + at, in.data() + at, out.left.data() + at, out.right.data() + at,
                          static_cast<std::uint32_t>(frames), 0, outbox);
        for (OutgoingMidi message : outbox.messages()) {
            message.frame += static_cast<std::uint32_t>(at);
            out.midi.push_back(message);
        }
    }
    return out;
}

[[nodiscard]] inline Rendered render(const ParameterValues& values, const Signal& in,
                                     std::size_t block = 256) {
    Processor processor{Rate};
    processor.setParameters(values);
    return render(processor, in, block);
}

/// Returns the amplitude of one frequency in a section of a signal, measured with a Hann window.
[[nodiscard]] inline double amplitudeAt(const Signal& signal, std::size_t from, std::size_t frames,
                                        double hertz, double rate = Rate) {
    double real = 0., imaginary = 0., weights = 0.;
    for (std::size_t i = 0; i < frames; ++i) {
        const double turn = 2. * std::numbers::pi * static_cast<double>(i);
        const double weight = 0.5 - 0.5 * std::cos(turn / static_cast<double>(frames));
        const double sample = weight * static_cast<double>(signal[from + i]);
        real += sample * std::cos(turn * hertz / rate);
        imaginary += sample * std::sin(turn * hertz / rate);
        weights += weight;
    }
    return 2. * std::hypot(real, imaginary) / weights;
}

[[nodiscard]] inline double decibels(double linear) {
    return 20. * std::log10(linear + 1e-12);
}

[[nodiscard]] inline double rms(const Signal& signal, std::size_t from, std::size_t to) {
    double sum = 0.;
    for (std::size_t i = from; i < to; ++i) {
        sum += static_cast<double>(signal[i]) * static_cast<double>(signal[i]);
    }
    return std::sqrt(sum / static_cast<double>(to - from));
}

/// Returns the largest second difference in a section of a signal, which measures its sharpest corner.
[[nodiscard]] inline float sharpestCorner(const Signal& signal, std::size_t from, std::size_t to) {
    float most = 0.F;
    for (std::size_t i = from + 1; i + 1 < to; ++i) {
        most = std::max(most, std::abs(signal[i + 1] - 2.F * signal[i] + signal[i - 1]));
    }
    return most;
}

} // namespace tonewright::effect::test
