// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Control-rate smoothing. Controls advance once per tick of TickFrames frames; within a tick, values change
// linearly. Ticks are counted from the start of processing and not of a block, so that the sound does not
// depend on the host's block size.
#pragma once

#include <array>
#include <cmath>

namespace tonewright::effect {

inline constexpr int TickFrames = 16;

/// The samples of one tick.
using TickBuffer = std::array<float, TickFrames>;

/// Returns the fraction by which a one-pole smoother with the time constant `seconds` approaches its target
/// in one tick.
[[nodiscard]] inline float tickCoefficient(double sampleRate, double seconds) noexcept {
    return seconds <= 0. ? 1.F : static_cast<float>(1. - std::exp(-TickFrames / (sampleRate * seconds)));
}

/// A value that approaches its target once per tick and finally reaches it exactly.
struct Smoothed {
    float value = 0.F;
    float target = 0.F;

    void snap(float to) noexcept { value = target = to; }

    void advance(float coefficient) noexcept {
        value += coefficient * (target - value);
        if (std::abs(target - value) < 1e-5F * (1.F + std::abs(target))) {
            value = target;
        }
    }
};

/// A value that changes linearly within a tick.
class Ramp {
  public:
    void snap(float to) noexcept {
        _now = _end = to;
        _step = 0.F;
    }

    /// Begins a tick that ends with the value `end`.
    void beginTick(float end) noexcept {
        _now = _end;
        _end = end;
        _step = (_end - _now) / static_cast<float>(TickFrames);
    }

    /// Returns the value for the next frame.
    float next() noexcept {
        _now += _step;
        return _now;
    }

    [[nodiscard]] float now() const noexcept { return _now; }
    [[nodiscard]] float end() const noexcept { return _end; }

    /// Returns whether the value is exactly `value` until the end of the tick.
    [[nodiscard]] bool restsAt(float value) const noexcept { return _step == 0.F && _now == value; }

  private:
    float _now = 0.F;
    float _end = 0.F;
    float _step = 0.F;
};

} // namespace tonewright::effect
