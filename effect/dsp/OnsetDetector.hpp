// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Finds the onsets of notes and beats in the input. Loudness is measured in hops of about 1.3 ms; an onset is
// a rise well above the preceding level. Hops count from the start of processing, so the result does not
// depend on the host's block size. Used on the audio thread; never allocates.
#pragma once

#include <cstdint>

namespace tonewright::effect {

/// Detects onsets in a stereo stream.
class OnsetDetector {
  public:
    explicit OnsetDetector(double sampleRate) noexcept;

    void reset() noexcept;

    /// Sets how small a rise counts, 0..1.
    void setSensitivity(float sensitivity) noexcept { _thresholdDecibels = 14.F - 11.F * sensitivity; }

    /// Processes one frame; returns 0, or the MIDI velocity of an onset that is certain at this frame (about
    /// 5 ms after it began: its strength is the peak of that time).
    [[nodiscard]] std::uint8_t push(float left, float right) noexcept;

  private:
    [[nodiscard]] std::uint8_t endHop() noexcept;

    int _hopFrames;
    int _refractoryHops;
    float _hopRelease;    // decibels by which the held level falls per hop
    float _referenceRise; // fraction by which the reference approaches the level per hop
    float _referenceFall;
    float _thresholdDecibels = 7.F;

    int _frame = 0;
    float _energy = 0.F;
    float _edgeEnergy = 0.F;
    float _lastLeft = 0.F;
    float _lastRight = 0.F;
    float _level;     // held peak, decibels
    float _reference; // the preceding level, decibels
    float _peak = 0.F;
    int _measuring = 0; // hops left until the strength is known
    int _waiting = 0;   // hops left until another onset may begin
};

} // namespace tonewright::effect
