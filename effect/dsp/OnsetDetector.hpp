// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Finds the beginnings of notes and strokes in the input. Loudness is measured in hops of about
// 1.3 ms; an onset is a rise well above what was there before. Hops count from the start of
// processing, so the result does not depend on the host's block size.
// Used on the audio thread; never allocates.
#pragma once

#include <cstdint>

namespace tonewright::effect {

/// Detects onsets in a stereo stream.
class OnsetDetector {
  public:
    explicit OnsetDetector(double sampleRate) noexcept;

    void reset() noexcept;

    /// Sets how small a rise counts, 0..1.
    void setSensitivity(float sensitivity) noexcept { thresholdDecibels_ = 14.F - 11.F * sensitivity; }

    /// Takes one frame; returns 0, or the MIDI velocity of an onset that is certain as of this
    /// frame (about 5 ms after it began: its strength is the peak of that time).
    [[nodiscard]] std::uint8_t push(float left, float right) noexcept;

  private:
    [[nodiscard]] std::uint8_t endHop() noexcept;

    int hopFrames_;
    int refractoryHops_;
    float hopRelease_;    // decibels that the held level falls per hop
    float referenceRise_; // share of the way that the reference goes per hop
    float referenceFall_;
    float thresholdDecibels_ = 7.F;

    int frame_ = 0;
    float energy_ = 0.F;
    float edgeEnergy_ = 0.F;
    float lastLeft_ = 0.F;
    float lastRight_ = 0.F;
    float level_;     // held peak, decibels
    float reference_; // what was there before, decibels
    float peak_ = 0.F;
    int measuring_ = 0; // hops left until the strength is known
    int waiting_ = 0;   // hops left until another onset may begin
};

} // namespace tonewright::effect
