// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Two trapezoidal state-variable filters in series for two channels; the modes are mixtures of their outputs,
// so that a change of mode is a fade. The structure stays stable however fast cutoff and resonance change.
// Used on the audio thread; never allocates.
#pragma once

#include "Parameters.hpp"
#include "Tick.hpp"

#include <array>

namespace tonewright::effect {

/// The filter stage of both channels.
class StateVariableFilter {
  public:
    explicit StateVariableFilter(double sampleRate) noexcept;

    /// Forgets all sound and applies the settings at once. `resonance` 0..1.
    void reset(FilterMode mode, float cutoffHertz, float resonance) noexcept;

    /// Begins a tick that ends with these values.
    void beginTick(FilterMode mode, float cutoffHertz, float resonance) noexcept;

    /// Processes n <= TickFrames frames in place.
    void process(float* left, float* right, int n) noexcept;

    /// Returns the highest cutoff that this sample rate allows.
    [[nodiscard]] float highestCutoff() const noexcept { return _highestCutoff; }

    /// Returns the gain of a mode at a frequency, for drawing: analog prototype, linear scale.
    [[nodiscard]] static float magnitude(FilterMode mode, float cutoffHertz, float resonance,
                                         float hertz) noexcept;

  private:
    // Shares of a section's input and its three outputs.
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
