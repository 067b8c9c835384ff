// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Control-rate machinery. Controls advance once per tick of TickFrames frames, counted from the start of
// processing and not from the start of a block, so that the sound does not depend on the host's block size;
// in between, values change linearly.
#pragma once

#include <array>
#include <cmath>

namespace tonewright::effect {

inline constexpr int TickFrames = 16;

/// Samples within one tick.
using TickBuffer = std::array<float, TickFrames>;

/// Returns the fraction by which a one-pole smoother of this time constant approaches its target per tick.
[[nodiscard]] inline float tickCoefficient(double sampleRate, double seconds) noexcept {
    return seconds <= 0. ? 1.F : static_cast<float>(1. - std::exp(-TickFrames / (sampleRate * seconds)));
}

/// Follows a target once per tick and settles exactly on it.
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

/// Changes linearly through one tick.
class Ramp {
  public:
    void snap(float to) noexcept {
        _now = _end = to;
        _step = 0.F;
    }

    /// Begins a tick that ends at this value.
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

    /// Returns whether the value stays exactly `value` for the rest of the tick.
    [[nodiscard]] bool restsAt(float value) const noexcept { return _step == 0.F && _now == value; }

  private:
    float _now = 0.F;
    float _end = 0.F;
    float _step = 0.F;
};

} // namespace tonewright::effect
