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
    : _coefficients1{sharedCoefficients<K1>()}
    , _coefficients2{sharedCoefficients<K2>()} {}

void DriveLane::reset() noexcept {
    _clean.reset();
    _padding.reset();
    _up1.reset();
    _down1.reset();
    _up2.reset();
    _down2.reset();
    _align.reset();
}

template <Shape S>
void DriveLane::twice(const float* in, const float* bias, float* out, int n) noexcept {
    TickBuffer delayed{};
    TickBuffer even{};
    TickBuffer odd{};
    _padding.process(in, delayed.data(), n);
    _up1.process(_coefficients1, delayed.data(), even.data(), odd.data(), n);
    for (std::size_t i = 0; i < static_cast<std::size_t>(n); ++i) {
        even[i] = shaped<S>(even[i] + bias[i]);
        odd[i] = shaped<S>(odd[i] + bias[i]);
    }
    _down1.process(_coefficients1, even.data(), odd.data(), out, n);
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
    _up1.process(_coefficients1, in, even.data(), odd.data(), n);
    for (std::size_t i = 0; i < count; ++i) {
        joined[2 * i] = even[i] + bias[i];
        joined[2 * i + 1] = odd[i] + bias[i];
    }
    _up2.process(_coefficients2, joined.data(), first.data(), second.data(), 2 * n);
    for (std::size_t i = 0; i < 2 * count; ++i) {
        first[i] = shaped<S>(first[i]);
        second[i] = shaped<S>(second[i]);
    }
    _down2.process(_coefficients2, first.data(), second.data(), joined.data(), 2 * n);
    _align.process(joined.data(), joined.data(), 2 * n);
    for (std::size_t i = 0; i < count; ++i) {
        even[i] = joined[2 * i];
        odd[i] = joined[2 * i + 1];
    }
    _down1.process(_coefficients1, even.data(), odd.data(), out, n);
}

void DriveLane::process(DriveSetting setting, const float* in, const float* bias, float* out,
                        int n) noexcept {
    if (setting.shape == Shape::Clean) {
        _clean.process(in, out, n);
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
    : _fadeStep{static_cast<float>(TickFrames / (sampleRate * FadeSeconds))}
    , _blockerPole{static_cast<float>(std::exp(-2. * std::numbers::pi * BlockerHertz / sampleRate))} {
    // The reference is a sine at -12 dBFS, a typical level of an instrument.
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
            const float mean = sum / Points; // DC offset, which a filter after the curve removes
            const float rms = std::sqrt(std::max(squares / Points - mean * mean, 0.F));
            _makeupTable[s][static_cast<std::size_t>(step)] = Reference / std::numbers::sqrt2_v<float> / rms;
        }
    }
}

float Drive::makeup(Shape shape, float driveDecibels) const noexcept {
    const auto& table = _makeupTable[static_cast<std::size_t>(shape)];
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
    lane.makeup.snap(makeup(setting.shape, _driveDecibels));
    lane.offset.snap(setting.shape == Shape::Clean ? 0.F : shaped(setting.shape, _biasValue));
}

void Drive::aimLane(Lane& lane) noexcept {
    lane.makeup.beginTick(makeup(lane.setting.shape, _driveDecibels));
    lane.offset.beginTick(lane.setting.shape == Shape::Clean ? 0.F : shaped(lane.setting.shape, _biasValue));
}

void Drive::reset(DriveSetting setting, float driveDecibels, float bias) noexcept {
    _driveDecibels = driveDecibels;
    _biasValue = biasOffset(bias);
    _gain.snap(gainOf(driveDecibels));
    _bias.snap(_biasValue);
    _fade.snap(0.F);
    _fading = false;
    _active = 0;
    setLane(_lanes[0], setting);
    _blockerIn.fill(0.F);
    _blockerOut.fill(0.F);
}

void Drive::beginTick(DriveSetting setting, float driveDecibels, float bias) noexcept {
    _driveDecibels = driveDecibels;
    _biasValue = biasOffset(bias);
    if (_fading && _fade.end() >= 1.F) {
        _active = 1 - _active;
        _fading = false;
        _fade.snap(0.F);
    }
    Lane& other = _lanes[1 - _active];
    const bool bothClean = setting.shape == Shape::Clean && _lanes[_active].setting.shape == Shape::Clean;
    if (!_fading && !bothClean && setting != _lanes[_active].setting) {
        setLane(other, setting);
        _fading = true;
        _warmUpTicks = (2 * DriveLatencyFrames) / TickFrames + 1;
    }
    _gain.beginTick(gainOf(driveDecibels));
    _bias.beginTick(_biasValue);
    aimLane(_lanes[_active]);
    if (_fading) {
        aimLane(other);
        _fade.beginTick(_warmUpTicks > 0 ? 0.F : std::min(_fade.end() + _fadeStep, 1.F));
        _warmUpTicks = std::max(_warmUpTicks - 1, 0);
    }
    for (std::size_t c = 0; c < 2; ++c) {
        _blockerIn[c] = flushed(_blockerIn[c]);
        _blockerOut[c] = flushed(_blockerOut[c]);
    }
}

void Drive::process(float* left, float* right, int n) noexcept {
    const auto count = static_cast<std::size_t>(n);
    TickBuffer gain{};
    TickBuffer bias{};
    TickBuffer fade{};
    for (std::size_t i = 0; i < count; ++i) {
        gain[i] = _gain.next();
        bias[i] = _bias.next();
        fade[i] = _fading ? _fade.next() : 0.F;
    }
    const std::array<float*, 2> channels{left, right};
    std::array<TickBuffer, 2> mixed{};
    for (std::size_t l = 0; l < 2; ++l) {
        if (l != _active && !_fading) {
            continue;
        }
        Lane& lane = _lanes[l];
        TickBuffer makeup{};
        TickBuffer offset{};
        for (std::size_t i = 0; i < count; ++i) {
            const float share = l == _active ? 1.F - fade[i] : fade[i];
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
                // Clean has no make-up gain and is only scaled by its share of the fade.
                const float share = l == _active ? 1.F - fade[i] : fade[i];
                mixed[c][i] += clean ? out[i] * share : (out[i] - offset[i]) * makeup[i];
            }
        }
    }
    for (std::size_t c = 0; c < 2; ++c) {
        for (std::size_t i = 0; i < count; ++i) {
            _blockerOut[c] = mixed[c][i] - _blockerIn[c] + _blockerPole * _blockerOut[c];
            _blockerIn[c] = mixed[c][i];
            channels[c][i] = _blockerOut[c];
        }
    }
}

} // namespace tonewright::effect
