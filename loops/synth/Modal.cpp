// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Struck bars, bells, bowls and tines: a few partials, each with its own decay time.

#include "Envelope.hpp"
#include "Filter.hpp"
#include "PitchPath.hpp"
#include "Random.hpp"
#include "Wavetable.hpp"

#include <array>

namespace tonewright::loops {

namespace {

constexpr std::size_t ModeCount = 7;

struct Material {
    std::array<double, ModeCount> ratios;
    std::array<double, ModeCount> levels;
};

// Frequency ratios of the partials: free bars (tuned by undercutting, as instrument makers do), a minor-third
// bell, a bowl whose partials grow with the square of their number, and a thin tine clamped at one end.
constexpr std::array<Material, 6> Materials{{
    {{1, 3.99, 9.93, 17.1, 24.6, 0, 0}, {1, .35, .16, .07, .03, 0, 0}},
    {{1, 2.756, 5.404, 8.933, 13.34, 18.64, 0}, {1, .6, .35, .2, .1, .05, 0}},
    {{1, 4, 10.02, 15.8, 0, 0, 0}, {1, .3, .12, .05, 0, 0, 0}},
    {{.5, 1, 1.2, 1.5, 2, 2.66, 4.02}, {.5, .9, .6, .3, .6, .35, .25}},
    {{1, 2.32, 4.25, 6.63, 9.38, 0, 0}, {1, .5, .3, .15, .08, 0, 0}},
    {{1, 5.42, 6.27, 12.1, 17.5, 0, 0}, {1, .22, .16, .08, .05, 0, 0}},
}};

struct Mode {
    double phase = 0.0;
    double step = 0.0;
    double level = 0.0;
    double fall = 0.0;
    double pan = 0.0;
};

} // namespace

StereoBuffer renderModal(const ModalPatch& patch, const Note& note, double rate) {
    Random random(note.seed);
    const Material& material = Materials[static_cast<std::size_t>(std::clamp(patch.material, 0.0, 5.0))];
    const WaveCycle& sine = waveCycle(WaveShape::Sine, 440.0, rate);
    const double frequency = frequencyOfNote(note.note);
    std::array<Mode, ModeCount> modes;
    std::size_t count = 0;
    double longest = 0.0;
    // A soft or low stroke excites fewer partials.
    const double firmness = std::clamp(patch.hardness * (0.4 + 0.8 * note.velocity), 0.02, 1.5);
    for (std::size_t index = 0; index < ModeCount; ++index) {
        const double hertz = frequency * material.ratios[index];
        if (hertz <= 0.0 || hertz > 0.45 * rate) {
            continue;
        }
        Mode& mode = modes[count++];
        const double height = std::max(material.ratios[index], 1.0);
        const double seconds = patch.decay * powerOfTwo(-patch.damping * logarithmOfTwo(height)) *
                               powerOfTwo((60.0 - note.note) / 36.0);
        mode.step = hertz / rate;
        mode.level = material.levels[index] * powerOfTwo((firmness - 0.7) * 1.5 * logarithmOfTwo(height));
        mode.fall = decayFactor(seconds, rate);
        mode.pan = index == 0 ? 0.0 : 0.4 * random.signedUnit();
        longest = std::max(longest, seconds);
    }
    Envelope held({patch.attack, 1.0, 1.0, patch.release}, note.gateFrames, rate);
    Smoother mallet(1500.0 + 6000.0 * firmness, rate);
    const double thudFall = decayFactor(0.03, rate);
    double thud = patch.click;

    StereoBuffer sound;
    const auto most = static_cast<std::size_t>(std::min(LongestNoteSeconds, longest * 1.3 + 0.05) * rate);
    for (std::size_t frame = 0; frame < most && !held.ended(); ++frame) {
        StereoFrame value;
        for (std::size_t index = 0; index < count; ++index) {
            Mode& mode = modes[index];
            const double wave = mode.level * sine.at(mode.phase);
            mode.phase += mode.step;
            mode.phase -= mode.phase >= 1.0 ? 1.0 : 0.0;
            mode.level *= mode.fall;
            value.left += wave * (1.0 - mode.pan);
            value.right += wave * (1.0 + mode.pan);
        }
        const double strike = thud * mallet.step(random.signedUnit());
        thud *= thudFall;
        const double seconds = static_cast<double>(frame) / rate;
        const double waver = patch.tremolo * 0.5 * sineOfTurns(seconds * patch.tremolorate);
        const double gain = held.step() * note.velocity * 0.42;
        sound.left.push_back((value.left * (1.0 + waver) + strike) * gain);
        sound.right.push_back((value.right * (1.0 - waver) + strike) * gain);
    }
    return sound;
}

} // namespace tonewright::loops
