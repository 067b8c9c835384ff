// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SpectrumAnalyser.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numbers>

namespace tonewright::effect {
namespace {

float edgeHertz(std::size_t band) noexcept {
    const float part = static_cast<float>(band) / static_cast<float>(SpectrumBands);
    return SpectrumLowestHertz * std::pow(SpectrumHighestHertz / SpectrumLowestHertz, part);
}

} // namespace

float spectrumBandHertz(std::size_t band) noexcept {
    return std::sqrt(edgeHertz(band) * edgeHertz(band + 1));
}

SpectrumAnalyser::SpectrumAnalyser(double sampleRate)
    : _sampleRate{static_cast<float>(sampleRate)}
    , _ring(std::bit_ceil(static_cast<std::size_t>(sampleRate / 30.)), 0.F)
    , _window(_ring.size())
    , _windowed(_ring.size())
    , _bins(_ring.size() / 2)
    , _transform(_bins.size(), false) {
    const std::size_t size = _ring.size();
    constexpr float Turn = 2.F * std::numbers::pi_v<float>;
    for (std::size_t i = 0; i < size; ++i) {
        _window[i] = 0.5F - 0.5F * std::cos(Turn * static_cast<float>(i) / static_cast<float>(size));
    }
}

void SpectrumAnalyser::reset() noexcept {
    std::fill(_ring.begin(), _ring.end(), 0.F);
}

void SpectrumAnalyser::analyse(Spectrum& bands) noexcept {
    const std::size_t size = _ring.size();
    for (std::size_t i = 0; i < size; ++i) {
        _windowed[i] = _ring[(_write + i) & (size - 1)] * _window[i];
    }
    _transform.transform_real(_windowed.data(), _bins.data());
    _bins[0].imag(0.F); // removes the bin at half the sample rate, which KISS FFT stores here
    const float binsPerHertz = static_cast<float>(size) / _sampleRate;
    const float scale = 4.F / static_cast<float>(size); // the Hann window halves the amplitude
    const auto lastIndex = size / 2 - 1;
    const auto lastBin = static_cast<float>(lastIndex);
    const auto power = [this](float bin) {
        const auto lower = static_cast<std::size_t>(bin);
        const float part = bin - static_cast<float>(lower);
        return (1.F - part) * std::norm(_bins[lower]) + part * std::norm(_bins[lower + 1]);
    };
    for (std::size_t band = 0; band < SpectrumBands; ++band) {
        const float from = std::min(edgeHertz(band) * binsPerHertz, lastBin);
        const float to = std::min(edgeHertz(band + 1) * binsPerHertz, lastBin);
        if (from >= lastBin) {
            bands[band] = SpectrumFloorDecibels; // above half the sample rate
            continue;
        }
        // Low bands are narrower than a bin, so their value is interpolated. High bands take the largest of
        // their bins.
        float most = power(0.5F * (from + to));
        for (auto bin = static_cast<std::size_t>(std::ceil(from)); static_cast<float>(bin) < to; ++bin) {
            most = std::max(most, std::norm(_bins[bin]));
        }
        bands[band] = std::max(10.F * std::log10(most * scale * scale + 1e-12F), SpectrumFloorDecibels);
    }
}

} // namespace tonewright::effect
