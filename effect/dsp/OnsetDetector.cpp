// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OnsetDetector.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::effect {
namespace {

constexpr double HopSeconds = 0.00133;
constexpr double RefractorySeconds = 0.05;
constexpr float ReleaseDecibelsPerSecond = 200.F; // bridges the gaps between the periods of a bass note
constexpr double ReferenceRiseSeconds = 0.03;
constexpr double ReferenceFallSeconds = 0.008;
constexpr int StrengthHops = 3;
constexpr float Silence = -80.F;
constexpr float QuietestOnset = -54.F;
constexpr float LoudestOnset = 0.F;

float decibelsOf(float energy) noexcept {
    return 10.F * std::log10(energy + 1e-8F);
}

} // namespace

OnsetDetector::OnsetDetector(double sampleRate) noexcept
    : _hopFrames{std::max(4, static_cast<int>(std::lround(sampleRate * HopSeconds)))} {
    const double hop = _hopFrames / sampleRate;
    _refractoryHops = static_cast<int>(std::lround(RefractorySeconds / hop));
    _hopRelease = ReleaseDecibelsPerSecond * static_cast<float>(hop);
    _referenceRise = static_cast<float>(1. - std::exp(-hop / ReferenceRiseSeconds));
    _referenceFall = static_cast<float>(1. - std::exp(-hop / ReferenceFallSeconds));
    reset();
}

void OnsetDetector::reset() noexcept {
    _frame = 0;
    _energy = _edgeEnergy = _lastLeft = _lastRight = _peak = 0.F;
    _level = _reference = Silence;
    _measuring = _waiting = 0;
}

std::uint8_t OnsetDetector::push(float left, float right) noexcept {
    const float edgeLeft = left - _lastLeft;
    const float edgeRight = right - _lastRight;
    _lastLeft = left;
    _lastRight = right;
    _energy += left * left + right * right;
    _edgeEnergy += edgeLeft * edgeLeft + edgeRight * edgeRight;
    if (++_frame < _hopFrames) {
        return 0;
    }
    return endHop();
}

std::uint8_t OnsetDetector::endHop() noexcept {
    // Attacks contain much treble, so the energy of the differences between successive samples is added.
    const float scale = 0.5F / static_cast<float>(_hopFrames);
    const float now = std::max(decibelsOf((_energy + _edgeEnergy) * scale), Silence);
    _frame = 0;
    _energy = _edgeEnergy = 0.F;

    _level = std::max(now, _level - _hopRelease);
    const float rise = _level - _reference;
    _reference += (rise > 0.F ? _referenceRise : _referenceFall) * rise;
    _waiting = std::max(_waiting - 1, 0);

    if (_measuring == 0) {
        if (_waiting == 0 && rise > _thresholdDecibels && now > QuietestOnset) {
            _measuring = StrengthHops;
            _waiting = _refractoryHops;
            _peak = now;
        }
        return 0;
    }
    _peak = std::max(_peak, now);
    if (--_measuring > 0) {
        return 0;
    }
    _reference = _level; // this rise must not be detected again
    const float strength = (_peak - QuietestOnset) / (LoudestOnset - QuietestOnset);
    return static_cast<std::uint8_t>(std::lround(1.F + 126.F * std::clamp(strength, 0.F, 1.F)));
}

} // namespace tonewright::effect
