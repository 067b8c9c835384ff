// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Four tuned strings for each channel: delay lines with feedback through a damping filter, which resonate at
// a pitch and its partials. Retuning changes the delays gradually and does not click. Used on the audio
// thread; only the constructor allocates.
#pragma once

#include "Parameters.hpp"
#include "Tick.hpp"

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace tonewright::effect {

/// The settings of the bank.
struct ResonatorSetting {
    float rootNote = 48.F; ///< MIDI note, fractions allowed
    Voicing voicing = Voicing::Unison;
    std::span<const std::uint8_t> chord; ///< held notes for Voicing::HeldChord, latest first
    float bendSemitones = 0.F;
    float decaySeconds = 1.F; ///< time to fall by 60 dB
    float damping = 0.F;      ///< 0..1
    float glideMilliseconds = 0.F;
};

/// The resonators of both channels.
class ResonatorBank {
  public:
    static constexpr std::size_t VoiceCount = 4;

    explicit ResonatorBank(double sampleRate);

    /// Clears the strings and applies the setting without gliding.
    void reset(const ResonatorSetting& setting) noexcept;

    /// Clears the strings and keeps the tuning.
    void silence() noexcept;

    /// Begins a tick. Pitches glide to the setting; its other values are reached at the end of the tick.
    void beginTick(const ResonatorSetting& setting) noexcept;

    /// Excites the bank with n <= TickFrames input frames and writes only the sound of the resonators.
    void process(const float* inLeft, const float* inRight, float* outLeft, float* outRight, int n) noexcept;

  private:
    struct String {
        std::vector<float> line;
        std::size_t write = 0;
        float lowpass = 0.F;
        float delay = 0.F;      // the delay at the end of the tick, in frames
        float aimedNote = -1.F; // values for which delay, feedback and level were last computed
        float aimedDecay = -1.F;
        float aimedPole = -1.F;
        float wantedDelay = 0.F;
        Ramp delayRamp;
        Ramp feedback;
        Ramp level;
    };
    struct Voice {
        float pitch = 48.F;  // the gliding pitch, as a MIDI note
        float target = 48.F; // the target of the glide
        std::array<String, 2> channels;
    };

    [[nodiscard]] float targetNote(const ResonatorSetting& setting, std::size_t voice) const noexcept;
    [[nodiscard]] float delayFor(float note) const noexcept;
    void aim(String& string, float note, const ResonatorSetting& setting, bool atOnce) noexcept;
    void updateDamping(float damping) noexcept;

    float _sampleRate;
    std::size_t _mask;
    float _longestDelay;
    float _damping = -1.F;
    float _lowpassPole = 0.F;
    bool _silent = true; // the lines contain only zeros
    std::array<Voice, VoiceCount> _voices;
};

} // namespace tonewright::effect
