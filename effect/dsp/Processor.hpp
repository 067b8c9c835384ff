// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The whole effect: drive, filter and resonators, modulated by an envelope follower and by MIDI, and a dry
// path with the same latency. The effect also sends a MIDI note for every onset in the input.
//
// One thread at a time. Only the constructor allocates; all other operations are for the audio thread and
// neither allocate nor wait. Sound and messages do not depend on the block size.
#pragma once

#include "Drive.hpp"
#include "EnvelopeFollower.hpp"
#include "Halfband.hpp"
#include "OnsetDetector.hpp"
#include "OnsetNotes.hpp"
#include "Parameters.hpp"
#include "Performance.hpp"
#include "ResonatorBank.hpp"
#include "SpectrumAnalyser.hpp"
#include "StateVariableFilter.hpp"

#include <array>
#include <cstdint>
#include <span>

namespace tonewright::effect {

/// The measurements that the panel displays.
struct DisplayFrame {
    std::array<float, 2> inputPeaks{};  ///< linear, since the last display frame
    std::array<float, 2> outputPeaks{}; ///< linear, since the last display frame
    float envelope = 0.F;               ///< reading of the envelope follower, 0..1
    float cutoffHertz = 0.F;            ///< cutoff with all modulation
    float rootNote = 0.F;               ///< MIDI note that tunes the resonators
    float onsets = 0.F;                 ///< number of onsets, modulo 4096
    Spectrum spectrum{};                ///< spectrum of the output
};

/// The effect at one sample rate, in stereo.
class Processor {
  public:
    explicit Processor(double sampleRate);

    /// Ends all sound and all held notes; keeps the tuning.
    void reset() noexcept;

    /// Sets all controls; any values are allowed. The first call after construction, reset or restore takes
    /// effect immediately, later changes are smoothed.
    void setParameters(const ParameterValues& values) noexcept;

    /// Handles one MIDI message at the current frame.
    void midi(std::span<const std::uint8_t> message) noexcept { _performance.handle(message); }

    /// Processes a part of a block that begins at frame `firstFrame` of the block. The output buffers may be
    /// the input buffers, even swapped. Adds the MIDI messages for the host to `outbox`.
    void process(const float* inLeft, const float* inRight, float* outLeft, float* outRight,
                 std::uint32_t frames, std::uint32_t firstFrame, MidiOutbox& outbox) noexcept;

    /// Returns the latency in frames, which does not depend on the controls.
    [[nodiscard]] static constexpr int latencyFrames() noexcept { return DriveLatencyFrames; }

    /// Enables or disables the measurements for the panel.
    void setMetering(bool on) noexcept;

    /// Returns the measurements made since the last call.
    [[nodiscard]] DisplayFrame takeDisplay() noexcept;

    [[nodiscard]] PerformanceSnapshot snapshot() const noexcept { return _performance.snapshot(); }
    void restore(const PerformanceSnapshot& snapshot) noexcept;

  private:
    // The controls that are smoothed once per tick.
    enum Smooth : std::size_t {
        DriveDecibels,
        Bias,
        EnvelopeDrive,
        CutoffNote,
        Resonance,
        EnvelopeCutoff,
        DecayOctaves,
        Damping,
        ResonatorShare,
        WetShare,
        OutputGain,
        SmoothCount,
    };

    [[nodiscard]] float value(Parameter parameter) const noexcept { return _values[index(parameter)]; }
    [[nodiscard]] float rootNote() const noexcept;
    [[nodiscard]] ResonatorSetting resonatorSetting() const noexcept;
    void aimSmoothers() noexcept;
    void resetSound() noexcept;
    void beginTick() noexcept;
    void segment(const float* inLeft, const float* inRight, float* outLeft, float* outRight, int n,
                 std::uint32_t firstFrame, MidiOutbox& outbox) noexcept;
    void listen(const TickBuffer& left, const TickBuffer& right, int n, std::uint32_t firstFrame,
                MidiOutbox& outbox) noexcept;
    void wetPath(TickBuffer& left, TickBuffer& right, int n) noexcept;
    void meter(const TickBuffer& inLeft, const TickBuffer& inRight, const float* outLeft,
               const float* outRight, int n) noexcept;

    double _sampleRate;
    ParameterValues _raw{};    // as received from the host
    ParameterValues _values{}; // clamped and rounded
    bool _settle = true;       // the next values take effect immediately
    int _tickPhase = 0;

    Performance _performance;
    EnvelopeFollower _envelope;
    OnsetDetector _detector;
    OnsetNotes _notes;
    Drive _drive;
    StateVariableFilter _filter;
    ResonatorBank _bank;
    std::array<FixedDelay<DriveLatencyFrames, TickFrames>, 2> _dryDelay;

    float _smoothing;
    std::array<Smoothed, SmoothCount> _smooth{};
    Ramp _wetRamp;
    Ramp _bankRamp;
    Ramp _gainRamp;
    Ramp _enabledRamp;
    float _enabledStep;
    Smoothed _bankGate; // closes briefly for All Sound Off
    Ramp _bankGateRamp;
    float _bankGateCoefficient;
    float _cutoffHertz = 1000.F;

    bool _metering = false;
    DisplayFrame _display{};
    std::uint32_t _onsetCount = 0;
    SpectrumAnalyser _analyser;
};

} // namespace tonewright::effect
