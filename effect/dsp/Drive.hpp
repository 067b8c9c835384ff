// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The drive stage: gain, bias, an oversampled curve, and a gain that keeps the loudness. Clean passes the
// signal through a delay instead; every setting has the same latency. Used on the audio thread; only the
// constructor allocates.
#pragma once

#include "Halfband.hpp"
#include "Parameters.hpp"
#include "Tick.hpp"

#include <array>
#include <vector>

namespace tonewright::effect {

/// Delay of every drive setting, in frames at the host's rate.
inline constexpr int DriveLatencyFrames = 37;

/// What a lane does.
struct DriveSetting {
    Shape shape = Shape::Clean;
    Oversampling oversampling = Oversampling::FourTimes;
    friend bool operator==(const DriveSetting&, const DriveSetting&) = default;
};

/// One channel of one setting: its filters and their memory.
class DriveLane {
  public:
    DriveLane() noexcept;
    void reset() noexcept;

    /// Processes n <= TickFrames frames; `bias` is per frame, `out` may be `in`.
    void process(DriveSetting setting, const float* in, const float* bias, float* out, int n) noexcept;

  private:
    // Stage 1 (base rate to twice) has 63 taps: flat to 20 kHz at 48 kHz, 80 dB down from 28 kHz. Stage 2
    // (twice to four times) needs only 23, because its signal occupies less of the band.
    static constexpr int K1 = 15;
    static constexpr int K2 = 5;
    // Stage 2 delays by 4 * K2 + 2 samples at four times the rate; with one sample more at twice the rate
    // that is a whole number of frames, which the other settings compensate for.
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

/// The stereo stage. A change of curve or oversampling fades between two lanes.
class Drive {
  public:
    explicit Drive(double sampleRate);

    /// Forgets all sound and applies the settings at once.
    void reset(DriveSetting setting, float driveDecibels, float bias) noexcept;

    /// Begins a tick that ends with these values. `bias` 0..1.
    void beginTick(DriveSetting setting, float driveDecibels, float bias) noexcept;

    /// Processes n <= TickFrames frames in place.
    void process(float* left, float* right, int n) noexcept;

    /// Returns the gain that brings a moderate sine back to its level after the curve.
    [[nodiscard]] float makeup(Shape shape, float driveDecibels) const noexcept;

  private:
    static constexpr int TableSteps = 85; // from -24 dB to 60 dB

    struct Lane {
        DriveSetting setting;
        Ramp makeup;
        Ramp offset; // the curve's response to the bias alone, which is subtracted
        std::array<DriveLane, 2> channels;
    };

    void setLane(Lane& lane, DriveSetting setting) noexcept;
    void aimLane(Lane& lane) noexcept;

    std::array<std::array<float, TableSteps>, ShapeCount> _makeupTable{};
    std::array<Lane, 2> _lanes;
    std::size_t _active = 0;
    bool _fading = false;
    int _warmUpTicks = 0; // ticks during which the new lane still fills its filters before the fade
    float _driveDecibels = 0.F;
    float _biasValue = 0.F;
    Ramp _gain;
    Ramp _bias;
    Ramp _fade; // share of the lane that is not active
    float _fadeStep;
    float _blockerPole;
    std::array<float, 2> _blockerIn{};
    std::array<float, 2> _blockerOut{};
};

} // namespace tonewright::effect
