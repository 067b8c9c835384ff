// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The drive stage: gain, bias, an oversampled waveshaper, and make-up gain. The Clean curve only delays the
// signal, by the latency that all settings have. Used on the audio thread; only the constructor allocates.
#pragma once

#include "Halfband.hpp"
#include "Parameters.hpp"
#include "Tick.hpp"

#include <array>
#include <vector>

namespace tonewright::effect {

/// The latency of every drive setting, in frames at the host's sample rate.
inline constexpr int DriveLatencyFrames = 37;

/// The curve and the oversampling of a lane.
struct DriveSetting {
    Shape shape = Shape::Clean;
    Oversampling oversampling = Oversampling::FourTimes;
    friend bool operator==(const DriveSetting&, const DriveSetting&) = default;
};

/// The oversampling filters of one channel, with their state.
class DriveLane {
  public:
    DriveLane() noexcept;
    void reset() noexcept;

    /// Processes n <= TickFrames frames. `bias` has a value for each frame; `out` may be equal to `in`.
    void process(DriveSetting setting, const float* in, const float* bias, float* out, int n) noexcept;

  private:
    // Stage 1 (1x to 2x) has 63 taps: at 48 kHz, its response is flat to 20 kHz and 80 dB down from 28 kHz
    // on. Stage 2 (2x to 4x) needs only 23 taps, because the signal occupies a smaller part of the band.
    static constexpr int K1 = 15;
    static constexpr int K2 = 5;
    // Stage 2 delays the signal by 4 * K2 + 2 samples at 4x. With one more sample at 2x, its delay is a whole
    // number of frames, so the 2x setting can replace it by a plain delay.
    static constexpr int Stage1Latency = 2 * K1 + 1;
    static constexpr int Stage2Latency = K2 + 1;
    static_assert(Stage1Latency + Stage2Latency == DriveLatencyFrames);

    template <Shape S>
    void twice(const float* in, const float* bias, float* out, int n) noexcept;
    template <Shape S>
    void fourTimes(const float* in, const float* bias, float* out, int n) noexcept;

    const std::array<float, 2 * K1 + 2>& _coefficients1;
    const std::array<float, 2 * K2 + 2>& _coefficients2;
    FixedDelay<DriveLatencyFrames, TickFrames> _clean;
    FixedDelay<Stage2Latency, TickFrames> _padding;
    HalfbandUp<K1, TickFrames> _up1;
    HalfbandDown<K1, TickFrames> _down1;
    HalfbandUp<K2, 2 * TickFrames> _up2;
    HalfbandDown<K2, 2 * TickFrames> _down2;
    FixedDelay<1, 2 * TickFrames> _align;
};

/// The stereo drive stage. A change of curve or oversampling cross-fades between two lanes.
class Drive {
  public:
    explicit Drive(double sampleRate);

    /// Clears the filters and applies the settings without smoothing.
    void reset(DriveSetting setting, float driveDecibels, float bias) noexcept;

    /// Begins a tick. The values are reached at the end of the tick. `bias` is 0..1.
    void beginTick(DriveSetting setting, float driveDecibels, float bias) noexcept;

    /// Processes n <= TickFrames frames in place.
    void process(float* left, float* right, int n) noexcept;

    /// Returns the gain after the curve that restores the level of a sine at -12 dBFS.
    [[nodiscard]] float makeup(Shape shape, float driveDecibels) const noexcept;

  private:
    static constexpr int TableSteps = 85; // from -24 dB to 60 dB

    struct Lane {
        DriveSetting setting;
        Ramp makeup;
        Ramp offset; // the curve's output for the bias alone, which is subtracted
        std::array<DriveLane, 2> channels;
    };

    void setLane(Lane& lane, DriveSetting setting) noexcept;
    void aimLane(Lane& lane) noexcept;

    std::array<std::array<float, TableSteps>, ShapeCount> _makeupTable{};
    std::array<Lane, 2> _lanes;
    std::size_t _active = 0;
    bool _fading = false;
    int _warmUpTicks = 0; // ticks before the fade, in which the new lane's filters fill up
    float _driveDecibels = 0.F;
    float _biasValue = 0.F;
    Ramp _gain;
    Ramp _bias;
    Ramp _fade; // share of the inactive lane
    float _fadeStep;
    float _blockerPole;
    std::array<float, 2> _blockerIn{};
    std::array<float, 2> _blockerOut{};
};

} // namespace tonewright::effect
