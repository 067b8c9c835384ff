// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The spectrum that the panel shows, in perceptually even bands. Computed on the audio thread about thirty
// times a second while a panel requests it; only the constructor allocates.
#pragma once

#include <array>
#include <complex>
#include <cstddef>
#include <vector>

namespace tonewright::effect {

inline constexpr std::size_t SpectrumBands = 64;
inline constexpr float SpectrumLowestHertz = 25.F;
inline constexpr float SpectrumHighestHertz = 20000.F;
inline constexpr float SpectrumFloorDecibels = -90.F;

using Spectrum = std::array<float, SpectrumBands>;

/// Returns the frequency at the middle of a band.
[[nodiscard]] float spectrumBandHertz(std::size_t band) noexcept;

/// Keeps the latest part of a signal and analyses it on demand.
class SpectrumAnalyser {
  public:
    explicit SpectrumAnalyser(double sampleRate);

    void reset() noexcept;

    void push(float sample) noexcept {
        _ring[_write] = sample;
        _write = (_write + 1) & (_ring.size() - 1);
    }

    /// Measures the bands in decibels; a full-scale sine reads 0.
    void analyse(Spectrum& bands) noexcept;

  private:
    void transform() noexcept;

    float _sampleRate;
    std::vector<float> _ring;
    std::size_t _write = 0;
    std::vector<float> _window;
    std::vector<std::complex<float>> _work;
    std::vector<std::complex<float>> _twiddles;
};

} // namespace tonewright::effect
