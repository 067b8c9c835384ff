// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Finds the onsets of notes and beats in the input. The level is measured in hops of about 1.3 ms; an onset
// is a rise well above the preceding level. Hops are counted from the start of processing, so the result does
// not depend on the host's block size. Used on the audio thread; never allocates.
#pragma once

#include <cstdint>

namespace tonewright::effect {

/// Detects onsets in a stereo stream.
class OnsetDetector {
  public:
    explicit OnsetDetector(double sampleRate) noexcept;

    void reset() noexcept;

    /// Sets the sensitivity, 0..1. A higher value detects smaller rises.
    void setSensitivity(float sensitivity) noexcept { _thresholdDecibels = 14.F - 11.F * sensitivity; }

    /// Processes one frame. Returns 0, or the MIDI velocity of an onset that is reported at this frame. An
    /// onset is reported about 5 ms after it began; its velocity is derived from the peak level in that time.
    [[nodiscard]] std::uint8_t push(float left, float right) noexcept;

  private:
    [[nodiscard]] std::uint8_t endHop() noexcept;

    int _hopFrames;
    int _refractoryHops;
    float _hopRelease;    // decibels by which the level falls per hop
    float _referenceRise; // fraction by which the reference approaches the level per hop
    float _referenceFall;
    float _thresholdDecibels = 7.F;

    int _frame = 0;
    float _energy = 0.F;
    float _edgeEnergy = 0.F;
    float _lastLeft = 0.F;
    float _lastRight = 0.F;
    float _level;     // peak level with a slow decay, in decibels
    float _reference; // the preceding level, in decibels
    float _peak = 0.F;
    int _measuring = 0; // remaining hops of the peak measurement
    int _waiting = 0;   // hops until another onset may begin
};

} // namespace tonewright::effect
