// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The spectrum that the panel displays, in logarithmically spaced bands. Computed on the audio thread about
// 30 times a second while a panel requests it; only the constructor allocates.
#pragma once

#include <array>
#include <cmath>
#include <complex>
#include <cstddef>
#include <kissfft/kissfft.hh>
#include <vector>

namespace tonewright::effect {

inline constexpr std::size_t SpectrumBands = 64;
inline constexpr float SpectrumLowestHertz = 25.F;
inline constexpr float SpectrumHighestHertz = 20000.F;
inline constexpr float SpectrumFloorDecibels = -90.F;

using Spectrum = std::array<float, SpectrumBands>;

/// Returns the centre frequency of a band.
[[nodiscard]] float spectrumBandHertz(std::size_t band) noexcept;

/// Stores the latest part of a signal and analyses it on demand.
class SpectrumAnalyser {
  public:
    explicit SpectrumAnalyser(double sampleRate);

    void reset() noexcept;

    void push(float sample) noexcept {
        _ring[_write] = sample;
        _write = (_write + 1) & (_ring.size() - 1);
    }

    /// Writes the levels of the bands in decibels; a full-scale sine has 0 dB.
    void analyse(Spectrum& bands) noexcept;

  private:
    float _sampleRate;
    std::vector<float> _ring; // 33 to 67 ms; its size is a power of two
    std::size_t _write = 0;
    std::vector<float> _window;
    std::vector<float> _windowed;
    std::vector<std::complex<float>> _bins; // below half the sample rate
    kissfft<float> _transform; // allocates in a transform only for sizes with prime factors above 5
};

} // namespace tonewright::effect
