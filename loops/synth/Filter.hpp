// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The filters of instruments and effects: a two-pole state-variable filter without a unit delay in its
// feedback (trapezoidal integration), a one-pole smoother and a DC blocker. Each channel has a filter of its
// own. Values, not shared between threads.
#pragma once

#include "ExactMath.hpp"

#include <algorithm>
#include <cmath>

namespace tonewright::loops {

/// The coefficients of a state-variable filter.
struct FilterTuning {
    double g = 0.0;
    double k = 1.0;

    FilterTuning() = default;

    /// Sets the filter to `cutoff` Hz; `resonance` ranges from 0 (Butterworth) to 1 (almost
    /// self-oscillating).
    FilterTuning(double cutoff, double resonance, double rate) {
        const double turns = std::clamp(cutoff, 10.0, 0.46 * rate) / rate * 0.5;
        g = sineOfTurns(turns) / cosineOfTurns(turns);
        k = 1.4142135623730951 - 1.3742135623730951 * std::clamp(resonance, 0.0, 1.0);
    }
};

/// The outputs of a state-variable filter for one frame.
struct FilterOutputs {
    double low = 0.0;
    double band = 0.0; // gain at the centre: 1 / FilterTuning::k
    double high = 0.0;
};

/// The state of one channel.
class StateVariableFilter {
  public:
    /// Processes one frame.
    FilterOutputs step(double input, const FilterTuning& tuning) noexcept {
        const double high =
            (input - (tuning.k + tuning.g) * _first - _second) / (1.0 + tuning.g * (tuning.g + tuning.k));
        const double band = tuning.g * high + _first;
        const double low = tuning.g * band + _second;
        _first = settled(tuning.g * high + band);
        _second = settled(tuning.g * band + low);
        return {low, band, high};
    }

  private:
    static double settled(double value) noexcept { return std::fabs(value) < 1e-20 ? 0.0 : value; }

    double _first = 0.0;
    double _second = 0.0;
};

/// A one-pole low-pass filter.
class Smoother {
  public:
    Smoother() = default;

    Smoother(double cutoff, double rate)
        : _amount(1.0 - exponential(-2.0 * Pi * std::min(cutoff, 0.49 * rate) / rate)) {}

    double step(double input) noexcept {
        _state += _amount * (input - _state);
        if (std::fabs(_state) < 1e-20) {
            _state = 0.0;
        }
        return _state;
    }

  private:
    double _amount = 1.0;
    double _state = 0.0;
};

} // namespace tonewright::loops
