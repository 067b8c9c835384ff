// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Drive.hpp"

#include "Denormals.hpp"
#include "Shapers.hpp"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tonewright::effect {
namespace {

constexpr float LowestDrive = -24.F;
constexpr double FadeSeconds = 0.012;
constexpr double BlockerHertz = 8.;

float gainOf(float decibels) noexcept {
    return std::pow(10.F, decibels / 20.F);
}

float biasOffset(float bias) noexcept {
    return 0.6F * bias;
}

template <int K>
const std::array<float, 2 * K + 2>& sharedCoefficients() noexcept {
    static const auto coefficients = halfbandCoefficients<K>(8.);
    return coefficients;
}

} // namespace

DriveLane::DriveLane() noexcept
    : coefficients1_{sharedCoefficients<K1>()}
    , coefficients2_{sharedCoefficients<K2>()} {}

void DriveLane::reset() noexcept {
    clean_.reset();
    padding_.reset();
    up1_.reset();
    down1_.reset();
    up2_.reset();
    down2_.reset();
    align_.reset();
}

template <Shape S>
void DriveLane::twice(const float* in, const float* bias, float* out, int n) noexcept {
    TickBuffer delayed{};
    TickBuffer even{};
    TickBuffer odd{};
    padding_.process(in, delayed.data(), n);
    up1_.process(coefficients1_, delayed.data(), even.data(), odd.data(), n);
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        even[i] = shaped<S>(even[i] + bias[i]);
        odd[i] = shaped<S>(odd[i] + bias[i]);
    }
    down1_.process(coefficients1_, even.data(), odd.data(), out, n);
}

template <Shape S>
void DriveLane::fourTimes(const float* in, const float* bias, float* out, int n) noexcept {
    using Doubled = std::array<float, 2 * TickFrames>;
    TickBuffer even{};
    TickBuffer odd{};
    Doubled joined{};
    Doubled first{};
    Doubled second{};
    const auto count = static_cast<std::size_t>(n);
    up1_.process(coefficients1_, in, even.data(), odd.data(), n);
    for (std::size_t i = 0; i < count; ++i) {
        joined[2 * i] = even[i] + bias[i];
        joined[2 * i + 1] = odd[i] + bias[i];
    }
    up2_.process(coefficients2_, joined.data(), first.data(), second.data(), 2 * n);
    for (std::size_t i = 0; i < 2 * count; ++i) {
        first[i] = shaped<S>(first[i]);
        second[i] = shaped<S>(second[i]);
    }
    down2_.process(coefficients2_, first.data(), second.data(), joined.data(), 2 * n);
    align_.process(joined.data(), joined.data(), 2 * n);
    for (std::size_t i = 0; i < count; ++i) {
        even[i] = joined[2 * i];
        odd[i] = joined[2 * i + 1];
    }
    down1_.process(coefficients1_, even.data(), odd.data(), out, n);
}

void DriveLane::process(DriveSetting setting, const float* in, const float* bias, float* out,
                        int n) noexcept {
    if (setting.shape == Shape::Clean) {
        clean_.process(in, out, n);
        return;
    }
    withShape(setting.shape, [&]<Shape S>() {
        if (setting.oversampling == Oversampling::Twice) {
            twice<S>(in, bias, out, n);
        } else {
            fourTimes<S>(in, bias, out, n);
        }
    });
}

Drive::Drive(double sampleRate)
    : fadeStep_{static_cast<float>(TickFrames / (sampleRate * FadeSeconds))}
    , blockerPole_{static_cast<float>(std::exp(-2. * std::numbers::pi * BlockerHertz / sampleRate))} {
    // The reference is a sine at -12 dB below full scale, about the level of a played part.
    constexpr float Reference = 0.25F;
    constexpr int Points = 128;
    for (std::size_t s = 0; s < ShapeCount; ++s) {
        for (int step = 0; step < TableSteps; ++step) {
            const float gain = gainOf(LowestDrive + static_cast<float>(step));
            float sum = 0.F;
            float squares = 0.F;
            for (int i = 0; i < Points; ++i) {
                const float phase = 2.F * std::numbers::pi_v<float> * static_cast<float>(i) / Points;
                const float y = shaped(static_cast<Shape>(s), gain * Reference * std::sin(phase));
                sum += y;
                squares += y * y;
            }
            const float mean = sum / Points; // direct current is blocked behind the curve
            const float rms = std::sqrt(std::max(squares / Points - mean * mean, 0.F));
            makeupTable_[s][static_cast<std::size_t>(step)] = Reference / std::numbers::sqrt2_v<float> / rms;
        }
    }
}

float Drive::makeup(Shape shape, float driveDecibels) const noexcept {
    const auto& table = makeupTable_[static_cast<std::size_t>(shape)];
    const float place = std::clamp(driveDecibels - LowestDrive, 0.F, static_cast<float>(TableSteps - 2));
    const auto step = static_cast<std::size_t>(place);
    const float part = std::min(place - static_cast<float>(step), 1.F);
    return table[step] + part * (table[step + 1] - table[step]);
}

void Drive::setLane(Lane& lane, DriveSetting setting) noexcept {
    lane.setting = setting;
    for (auto& channel : lane.channels) {
        channel.reset();
    }
    lane.makeup.snap(makeup(setting.shape, driveDecibels_));
    lane.offset.snap(setting.shape == Shape::Clean ? 0.F : shaped(setting.shape, biasValue_));
}

void Drive::aimLane(Lane& lane) noexcept {
    lane.makeup.beginTick(makeup(lane.setting.shape, driveDecibels_));
    lane.offset.beginTick(lane.setting.shape == Shape::Clean ? 0.F : shaped(lane.setting.shape, biasValue_));
}

void Drive::reset(DriveSetting setting, float driveDecibels, float bias) noexcept {
    driveDecibels_ = driveDecibels;
    biasValue_ = biasOffset(bias);
    gain_.snap(gainOf(driveDecibels));
    bias_.snap(biasValue_);
    fade_.snap(0.F);
    fading_ = false;
    active_ = 0;
    setLane(lanes_[0], setting);
    blockerIn_.fill(0.F);
    blockerOut_.fill(0.F);
}

void Drive::beginTick(DriveSetting setting, float driveDecibels, float bias) noexcept {
    driveDecibels_ = driveDecibels;
    biasValue_ = biasOffset(bias);
    if (fading_ && fade_.end() >= 1.F) {
        active_ = 1 - active_;
        fading_ = false;
        fade_.snap(0.F);
    }
    Lane& other = lanes_[1 - active_];
    const bool bothClean = setting.shape == Shape::Clean && lanes_[active_].setting.shape == Shape::Clean;
    if (!fading_ && !bothClean && setting != lanes_[active_].setting) {
        setLane(other, setting);
        fading_ = true;
        warmUpTicks_ = (2 * DriveLatencyFrames) / TickFrames + 1;
    }
    gain_.beginTick(gainOf(driveDecibels));
    bias_.beginTick(biasValue_);
    aimLane(lanes_[active_]);
    if (fading_) {
        aimLane(other);
        fade_.beginTick(warmUpTicks_ > 0 ? 0.F : std::min(fade_.end() + fadeStep_, 1.F));
        warmUpTicks_ = std::max(warmUpTicks_ - 1, 0);
    }
    for (std::size_t c = 0; c < 2; ++c) {
        blockerIn_[c] = flushed(blockerIn_[c]);
        blockerOut_[c] = flushed(blockerOut_[c]);
    }
}

void Drive::process(float* left, float* right, int n) noexcept {
    const auto count = static_cast<std::size_t>(n);
    TickBuffer gain{};
    TickBuffer bias{};
    TickBuffer fade{};
    for (std::size_t i = 0; i < count; ++i) {
        gain[i] = gain_.next();
        bias[i] = bias_.next();
        fade[i] = fading_ ? fade_.next() : 0.F;
    }
    const std::array<float*, 2> channels{left, right};
    std::array<TickBuffer, 2> mixed{};
    for (std::size_t l = 0; l < 2; ++l) {
        if (l != active_ && !fading_) {
            continue;
        }
        Lane& lane = lanes_[l];
        TickBuffer makeup{};
        TickBuffer offset{};
        for (std::size_t i = 0; i < count; ++i) {
            const float share = l == active_ ? 1.F - fade[i] : fade[i];
            makeup[i] = lane.makeup.next() * share;
            offset[i] = lane.offset.next();
        }
        const bool clean = lane.setting.shape == Shape::Clean;
        for (std::size_t c = 0; c < 2; ++c) {
            TickBuffer driven{};
            for (std::size_t i = 0; i < count; ++i) {
                driven[i] = clean ? channels[c][i] : channels[c][i] * gain[i];
            }
            TickBuffer out{};
            lane.channels[c].process(lane.setting, driven.data(), bias.data(), out.data(), n);
            for (std::size_t i = 0; i < count; ++i) {
                // Clean has no gain to make up for: its share of the fade is all it is scaled by.
                const float share = l == active_ ? 1.F - fade[i] : fade[i];
                mixed[c][i] += clean ? out[i] * share : (out[i] - offset[i]) * makeup[i];
            }
        }
    }
    for (std::size_t c = 0; c < 2; ++c) {
        for (std::size_t i = 0; i < count; ++i) {
            blockerOut_[c] = mixed[c][i] - blockerIn_[c] + blockerPole_ * blockerOut_[c];
            blockerIn_[c] = mixed[c][i];
            channels[c][i] = blockerOut_[c];
        }
    }
}

} // namespace tonewright::effect
