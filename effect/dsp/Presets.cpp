// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Presets.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <initializer_list>
#include <utility>

namespace tonewright::effect {
namespace {

using P = Parameter;

template <typename Choice>
constexpr float choice(Choice value) noexcept {
    return static_cast<float>(value);
}

ParameterValues with(std::initializer_list<std::pair<Parameter, float>> changes) noexcept {
    ParameterValues values = defaultValues();
    for (const auto& [parameter, value] : changes) {
        values[index(parameter)] = value;
    }
    return values;
}

const std::array<Preset, 10>& presets() noexcept {
    static const std::array<Preset, 10> list{{
        {.symbol = "tonewright",
         .name = "Tonewright",
         .comment = "The starting point: warm drive, a low pass that opens with the playing.",
         .values = defaultValues()},
        {.symbol = "tape-hearth",
         .name = "Tape Hearth",
         .comment = "Gentle saturation and a rounded top, for whole mixes.",
         .values = with({{P::Drive, 9.F},
                         {P::Shape, choice(Shape::Warm)},
                         {P::Bias, 18.F},
                         {P::FilterMode, choice(FilterMode::LowPass12)},
                         {P::Cutoff, 11000.F},
                         {P::Resonance, 0.F},
                         {P::EnvelopeToCutoff, 6.F},
                         {P::ResonatorMix, 0.F},
                         {P::Mix, 85.F}})},
        {.symbol = "finger-wah",
         .name = "Finger Wah",
         .comment = "A band pass that opens with every stroke; for bass, clavinet and guitar.",
         .values = with({{P::Drive, 12.F},
                         {P::Shape, choice(Shape::Tube)},
                         {P::FilterMode, choice(FilterMode::BandPass)},
                         {P::Cutoff, 220.F},
                         {P::Resonance, 48.F},
                         {P::EnvelopeToCutoff, 28.F},
                         {P::Attack, 8.F},
                         {P::Release, 180.F},
                         {P::ResonatorMix, 0.F},
                         {P::Mix, 80.F},
                         {P::Output, 8.F}})},
        {.symbol = "sitar-strings",
         .name = "Sympathetic Strings",
         .comment = "Long resonators in fifths ring along with the playing.",
         .values = with({{P::Drive, 4.F},
                         {P::Shape, choice(Shape::Tube)},
                         {P::FilterMode, choice(FilterMode::HighPass12)},
                         {P::Cutoff, 140.F},
                         {P::Resonance, 10.F},
                         {P::EnvelopeToCutoff, 0.F},
                         {P::Note, 50.F},
                         {P::Voicing, choice(Voicing::Fifths)},
                         {P::Decay, 6.F},
                         {P::Damping, 12.F},
                         {P::ResonatorMix, 55.F},
                         {P::Mix, 70.F}})},
        {.symbol = "drum-chord",
         .name = "Drum Chord",
         .comment = "Turns drums into a minor chord; play keys to move it.",
         .values = with({{P::Drive, 8.F},
                         {P::Shape, choice(Shape::Clip)},
                         {P::FilterMode, choice(FilterMode::HighPass24)},
                         {P::Cutoff, 90.F},
                         {P::Resonance, 5.F},
                         {P::EnvelopeToCutoff, 0.F},
                         {P::Note, 45.F},
                         {P::Voicing, choice(Voicing::Minor)},
                         {P::Decay, 1.1F},
                         {P::Damping, 38.F},
                         {P::ResonatorMix, 85.F},
                         {P::Mix, 80.F},
                         {P::Output, 4.F}})},
        {.symbol = "glass-organ",
         .name = "Glass Organ",
         .comment = "Little but the resonators, in octaves, with a slow glide.",
         .values = with({{P::Drive, 0.F},
                         {P::Shape, choice(Shape::Clean)},
                         {P::FilterMode, choice(FilterMode::LowPass12)},
                         {P::Cutoff, 2600.F},
                         {P::Resonance, 15.F},
                         {P::EnvelopeToCutoff, 12.F},
                         {P::Note, 60.F},
                         {P::Voicing, choice(Voicing::Octaves)},
                         {P::Decay, 3.F},
                         {P::Damping, 4.F},
                         {P::Glide, 260.F},
                         {P::ResonatorMix, 88.F},
                         {P::Output, 5.F}})},
        {.symbol = "folded-paper",
         .name = "Folded Paper",
         .comment = "A wave folder that unfolds as the sound dies away.",
         .values = with({{P::Drive, 16.F},
                         {P::Shape, choice(Shape::Fold)},
                         {P::Bias, 25.F},
                         {P::EnvelopeToDrive, 14.F},
                         {P::FilterMode, choice(FilterMode::LowPass24)},
                         {P::Cutoff, 6500.F},
                         {P::Resonance, 30.F},
                         {P::EnvelopeToCutoff, 0.F},
                         {P::ResonatorMix, 0.F},
                         {P::Mix, 75.F}})},
        {.symbol = "octave-wasp",
         .name = "Octave Wasp",
         .comment = "A rectifying fuzz with a nasal peak, an octave above the playing.",
         .values = with({{P::Drive, 24.F},
                         {P::Shape, choice(Shape::Octave)},
                         {P::FilterMode, choice(FilterMode::LowPass24)},
                         {P::Cutoff, 2400.F},
                         {P::Resonance, 55.F},
                         {P::KeyTrack, 100.F},
                         {P::EnvelopeToCutoff, -14.F},
                         {P::Attack, 2.F},
                         {P::Release, 90.F},
                         {P::ResonatorMix, 0.F},
                         {P::Mix, 90.F},
                         {P::Output, -2.F}})},
        {.symbol = "under-water",
         .name = "Under the Ice",
         .comment = "Dark and far away; loud notes let a little light in.",
         .values = with({{P::Drive, 10.F},
                         {P::Shape, choice(Shape::Warm)},
                         {P::FilterMode, choice(FilterMode::LowPass24)},
                         {P::Cutoff, 320.F},
                         {P::Resonance, 38.F},
                         {P::EnvelopeToCutoff, 16.F},
                         {P::Attack, 60.F},
                         {P::Release, 900.F},
                         {P::Note, 36.F},
                         {P::Voicing, choice(Voicing::Suspended)},
                         {P::Decay, 4.F},
                         {P::Damping, 70.F},
                         {P::ResonatorMix, 35.F},
                         {P::Output, 3.F}})},
        {.symbol = "held-choir",
         .name = "Held Choir",
         .comment = "Hold a chord: the resonators sing it with the voice of the input.",
         .values = with({{P::Drive, 14.F},
                         {P::Shape, choice(Shape::Warm)},
                         {P::Bias, 30.F},
                         {P::FilterMode, choice(FilterMode::Notch)},
                         {P::Cutoff, 900.F},
                         {P::Resonance, 20.F},
                         {P::KeyTrack, 100.F},
                         {P::EnvelopeToCutoff, 18.F},
                         {P::Note, 52.F},
                         {P::Voicing, choice(Voicing::HeldChord)},
                         {P::Decay, 2.4F},
                         {P::Damping, 22.F},
                         {P::Glide, 90.F},
                         {P::ResonatorMix, 86.F},
                         {P::Output, 8.F}})},
    }};
    return list;
}

} // namespace

std::span<const Preset> factoryPresets() noexcept {
    return presets();
}

std::optional<std::size_t> matchingPreset(const ParameterValues& values) noexcept {
    const auto list = factoryPresets();
    for (std::size_t p = 0; p < list.size(); ++p) {
        bool same = true;
        for (std::size_t i = 0; i < ParameterCount && same; ++i) {
            // Hosts store values as decimal text, so rounding errors are allowed for.
            const float tolerance = 1e-4F * std::max(1.F, std::abs(list[p].values[i]));
            same = i == index(Parameter::Enabled) || std::abs(values[i] - list[p].values[i]) <= tolerance;
        }
        if (same) {
            return p;
        }
    }
    return std::nullopt;
}

} // namespace tonewright::effect
