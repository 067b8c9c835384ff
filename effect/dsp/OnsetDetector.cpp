// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "OnsetDetector.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::effect {
namespace {

constexpr double HopSeconds = 0.00133;
constexpr double RefractorySeconds = 0.05;
constexpr float ReleaseDecibelsPerSecond = 200.F; // the gaps between a bass note's waves stay bridged
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
    : hopFrames_{std::max(4, static_cast<int>(std::lround(sampleRate * HopSeconds)))} {
    const double hop = hopFrames_ / sampleRate;
    refractoryHops_ = static_cast<int>(std::lround(RefractorySeconds / hop));
    hopRelease_ = ReleaseDecibelsPerSecond * static_cast<float>(hop);
    referenceRise_ = static_cast<float>(1. - std::exp(-hop / ReferenceRiseSeconds));
    referenceFall_ = static_cast<float>(1. - std::exp(-hop / ReferenceFallSeconds));
    reset();
}

void OnsetDetector::reset() noexcept {
    frame_ = 0;
    energy_ = edgeEnergy_ = lastLeft_ = lastRight_ = peak_ = 0.F;
    level_ = reference_ = Silence;
    measuring_ = waiting_ = 0;
}

std::uint8_t OnsetDetector::push(float left, float right) noexcept {
    const float edgeLeft = left - lastLeft_;
    const float edgeRight = right - lastRight_;
    lastLeft_ = left;
    lastRight_ = right;
    energy_ += left * left + right * right;
    edgeEnergy_ += edgeLeft * edgeLeft + edgeRight * edgeRight;
    if (++frame_ < hopFrames_) {
        return 0;
    }
    return endHop();
}

std::uint8_t OnsetDetector::endHop() noexcept {
    // Strokes are bright: edges count beside the plain energy.
    const float scale = 0.5F / static_cast<float>(hopFrames_);
    const float now = std::max(decibelsOf((energy_ + edgeEnergy_) * scale), Silence);
    frame_ = 0;
    energy_ = edgeEnergy_ = 0.F;

    level_ = std::max(now, level_ - hopRelease_);
    const float rise = level_ - reference_;
    reference_ += (rise > 0.F ? referenceRise_ : referenceFall_) * rise;
    waiting_ = std::max(waiting_ - 1, 0);

    if (measuring_ == 0) {
        if (waiting_ == 0 && rise > thresholdDecibels_ && now > QuietestOnset) {
            measuring_ = StrengthHops;
            waiting_ = refractoryHops_;
            peak_ = now;
        }
        return 0;
    }
    peak_ = std::max(peak_, now);
    if (--measuring_ > 0) {
        return 0;
    }
    reference_ = level_; // this rise has been counted
    const float strength = (peak_ - QuietestOnset) / (LoudestOnset - QuietestOnset);
    return static_cast<std::uint8_t>(std::lround(1.F + 126.F * std::clamp(strength, 0.F, 1.F)));
}

} // namespace tonewright::effect
