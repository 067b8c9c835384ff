// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Two trapezoidal state-variable filters in series, for two channels. Each mode is a mixture of their
// outputs, so that a change of mode is a cross-fade. The structure stays stable however fast cutoff and
// resonance change. Used on the audio thread; never allocates.
#pragma once

#include "Parameters.hpp"
#include "Tick.hpp"

#include <array>

namespace tonewright::effect {

/// The filter stage of both channels.
class StateVariableFilter {
  public:
    explicit StateVariableFilter(double sampleRate) noexcept;

    /// Clears the filters and applies the settings without smoothing. `resonance` is 0..1.
    void reset(FilterMode mode, float cutoffHertz, float resonance) noexcept;

    /// Begins a tick. The values are reached at the end of the tick.
    void beginTick(FilterMode mode, float cutoffHertz, float resonance) noexcept;

    /// Processes n <= TickFrames frames in place.
    void process(float* left, float* right, int n) noexcept;

    /// Returns the highest cutoff at this sample rate, in Hz.
    [[nodiscard]] float highestCutoff() const noexcept { return _highestCutoff; }

    /// Returns the linear gain of a mode at a frequency, for drawing. Computed from the analogue prototype.
    [[nodiscard]] static float magnitude(FilterMode mode, float cutoffHertz, float resonance,
                                         float hertz) noexcept;

  private:
    // Indices of the mixing shares of a section's input and its three outputs.
    enum Share : std::size_t { Input, Low, Band, High, ShareCount };
    using Shares = std::array<float, ShareCount>;
    struct Response {
        Shares first;
        Shares second;
    };
    struct Section {
        std::array<float, 2> state1{};
        std::array<float, 2> state2{};
    };

    [[nodiscard]] static Response responseOf(FilterMode mode) noexcept;
    [[nodiscard]] static float dampingOf(float resonance) noexcept;
    [[nodiscard]] float tangentOf(float cutoffHertz) const noexcept;

    double _sampleRate;
    float _highestCutoff;
    float _modeCoefficient;
    Ramp _tangent;
    Ramp _damping;
    Ramp _level;
    std::array<Smoothed, 2 * ShareCount> _shares{};
    std::array<Ramp, 2 * ShareCount> _shareRamps{};
    std::array<Section, 2> _sections{};
};

} // namespace tonewright::effect
