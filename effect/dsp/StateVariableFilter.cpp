// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "StateVariableFilter.hpp"

#include "Denormals.hpp"

#include <algorithm>
#include <cmath>
#include <complex>
#include <numbers>

namespace tonewright::effect {
namespace {

constexpr float SecondDamping = 1.414F; // the second section of a 24 dB mode has no resonance

// Returns the level for a resonance: a compromise, because a strong resonance makes either the peak too loud
// or all other frequencies too quiet.
float levelOf(float resonance) noexcept {
    return 1.F - 0.35F * resonance;
}

} // namespace

StateVariableFilter::StateVariableFilter(double sampleRate) noexcept
    : _sampleRate{sampleRate}
    , _highestCutoff{static_cast<float>(std::min(20000., 0.45 * sampleRate))}
    , _modeCoefficient{tickCoefficient(sampleRate, 0.006)} {}

StateVariableFilter::Response StateVariableFilter::responseOf(FilterMode mode) noexcept {
    constexpr Shares Through{1.F, 0.F, 0.F, 0.F};
    constexpr Shares LowOnly{0.F, 1.F, 0.F, 0.F};
    constexpr Shares BandOnly{0.F, 0.F, 1.F, 0.F};
    constexpr Shares HighOnly{0.F, 0.F, 0.F, 1.F};
    switch (mode) {
    case FilterMode::LowPass12:
        return {LowOnly, Through};
    case FilterMode::LowPass24:
        return {LowOnly, LowOnly};
    case FilterMode::BandPass:
        return {BandOnly, Through};
    case FilterMode::HighPass12:
        return {HighOnly, Through};
    case FilterMode::HighPass24:
        return {HighOnly, HighOnly};
    case FilterMode::Notch:
        return {{0.F, 1.F, 0.F, 1.F}, Through};
    case FilterMode::Off:
        break;
    }
    return {Through, Through};
}

float StateVariableFilter::dampingOf(float resonance) noexcept {
    // 1/Q from 1.41 (flat) to 0.05 (Q = 20), in equal ratios.
    return 1.414F * std::pow(0.05F / 1.414F, std::clamp(resonance, 0.F, 1.F));
}

float StateVariableFilter::tangentOf(float cutoffHertz) const noexcept {
    const double inside =
        std::clamp(static_cast<double>(cutoffHertz), 5., static_cast<double>(_highestCutoff));
    return static_cast<float>(std::tan(std::numbers::pi * inside / _sampleRate));
}

void StateVariableFilter::reset(FilterMode mode, float cutoffHertz, float resonance) noexcept {
    _sections = {};
    _tangent.snap(tangentOf(cutoffHertz));
    _damping.snap(dampingOf(resonance));
    _level.snap(levelOf(resonance));
    const Response response = responseOf(mode);
    for (std::size_t i = 0; i < ShareCount; ++i) {
        _shares[i].snap(response.first[i]);
        _shares[ShareCount + i].snap(response.second[i]);
        _shareRamps[i].snap(response.first[i]);
        _shareRamps[ShareCount + i].snap(response.second[i]);
    }
}

void StateVariableFilter::beginTick(FilterMode mode, float cutoffHertz, float resonance) noexcept {
    _tangent.beginTick(tangentOf(cutoffHertz));
    _damping.beginTick(dampingOf(resonance));
    _level.beginTick(levelOf(resonance));
    const Response response = responseOf(mode);
    for (std::size_t i = 0; i < ShareCount; ++i) {
        _shares[i].target = response.first[i];
        _shares[ShareCount + i].target = response.second[i];
    }
    for (std::size_t i = 0; i < _shares.size(); ++i) {
        _shares[i].advance(_modeCoefficient);
        _shareRamps[i].beginTick(_shares[i].value);
    }
    for (auto& section : _sections) {
        for (std::size_t c = 0; c < 2; ++c) {
            section.state1[c] = flushed(section.state1[c]);
            section.state2[c] = flushed(section.state2[c]);
        }
    }
}

void StateVariableFilter::process(float* left, float* right, int n) noexcept {
    if (_shareRamps[Input].restsAt(1.F) && _shareRamps[ShareCount + Input].restsAt(1.F) &&
        _shareRamps[Low].restsAt(0.F) && _shareRamps[Band].restsAt(0.F) && _shareRamps[High].restsAt(0.F)) {
        _sections = {};
        return;
    }
    const bool secondRests = _shareRamps[ShareCount + Input].restsAt(1.F);
    if (secondRests) {
        _sections[1] = {};
    }
    const std::array<float*, 2> channels{left, right};
    const auto section = [](Section& s, std::size_t c, float g, float k, float a, const Shares& shares,
                            float in) {
        // Trapezoidal integration without a unit delay in the loop. state1 and state2 are the integrators'
        // states.
        const float high = (in - (g + k) * s.state1[c] - s.state2[c]) * a;
        const float band = g * high + s.state1[c];
        const float low = g * band + s.state2[c];
        s.state1[c] = g * high + band;
        s.state2[c] = g * band + low;
        return shares[Input] * in + shares[Low] * low + shares[Band] * k * band + shares[High] * high;
    };
    for (int i = 0; i < n; ++i) {
        const float g = _tangent.next();
        const float k = _damping.next();
        const float level = _level.next();
        const float a = 1.F / (1.F + g * (g + k));
        Shares first{};
        Shares second{};
        for (std::size_t s = 0; s < ShareCount; ++s) {
            first[s] = _shareRamps[s].next();
            second[s] = _shareRamps[ShareCount + s].next();
        }
        const float scale = first[Input] + (1.F - first[Input]) * level;
        for (std::size_t c = 0; c < 2; ++c) {
            float y = section(_sections[0], c, g, k, a, first, channels[c][i]) * scale;
            if (!secondRests) {
                const float a2 = 1.F / (1.F + g * (g + SecondDamping));
                y = section(_sections[1], c, g, SecondDamping, a2, second, y);
            }
            channels[c][i] = y;
        }
    }
}

float StateVariableFilter::magnitude(FilterMode mode, float cutoffHertz, float resonance,
                                     float hertz) noexcept {
    const std::complex<float> s{0.F, hertz / std::max(cutoffHertz, 1.F)};
    const auto gain = [&s](const Shares& shares, float k) {
        const std::complex<float> denominator = s * s + k * s + 1.F;
        return std::abs(shares[Input] +
                        (shares[Low] + shares[Band] * k * s + shares[High] * s * s) / denominator);
    };
    const Response response = responseOf(mode);
    const float scale = mode == FilterMode::Off ? 1.F : levelOf(resonance);
    return scale * gain(response.first, dampingOf(resonance)) * gain(response.second, SecondDamping);
}

} // namespace tonewright::effect
