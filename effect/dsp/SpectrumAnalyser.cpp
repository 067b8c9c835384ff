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
    : _sampleRate{static_cast<float>(sampleRate)} {
    // About 43 ms at any rate.
    const std::size_t size = std::bit_ceil(static_cast<std::size_t>(sampleRate / 30.));
    _ring.assign(size, 0.F);
    _window.resize(size);
    _work.resize(size);
    _twiddles.resize(size / 2);
    constexpr float Turn = 2.F * std::numbers::pi_v<float>;
    for (std::size_t i = 0; i < size; ++i) {
        _window[i] = 0.5F - 0.5F * std::cos(Turn * static_cast<float>(i) / static_cast<float>(size));
    }
    for (std::size_t i = 0; i < size / 2; ++i) {
        _twiddles[i] = std::polar(1.F, -Turn * static_cast<float>(i) / static_cast<float>(size));
    }
}

void SpectrumAnalyser::reset() noexcept {
    std::fill(_ring.begin(), _ring.end(), 0.F);
}

// Radix-2 decimation in time, in place. Written out in real arithmetic: the library's complex
// product checks for infinities on every call.
void SpectrumAnalyser::transform() noexcept {
    const std::size_t size = _work.size();
    for (std::size_t i = 1, j = 0; i < size; ++i) {
        std::size_t bit = size >> 1U;
        for (; (j & bit) != 0; bit >>= 1U) {
            j ^= bit;
        }
        j ^= bit;
        if (i < j) {
            std::swap(_work[i], _work[j]);
        }
    }
    for (std::size_t half = 1; half < size; half *= 2) {
        const std::size_t stride = size / (2 * half);
        for (std::size_t start = 0; start < size; start += 2 * half) {
            for (std::size_t k = 0; k < half; ++k) {
                const std::complex<float> w = _twiddles[k * stride];
                const std::complex<float> a = _work[start + k];
                const std::complex<float> b = _work[start + k + half];
                const std::complex<float> turned{b.real() * w.real() - b.imag() * w.imag(),
                                                 b.real() * w.imag() + b.imag() * w.real()};
                _work[start + k] = a + turned;
                _work[start + k + half] = a - turned;
            }
        }
    }
}

void SpectrumAnalyser::analyse(Spectrum& bands) noexcept {
    const std::size_t size = _ring.size();
    for (std::size_t i = 0; i < size; ++i) {
        _work[i] = _ring[(_write + i) & (size - 1)] * _window[i];
    }
    transform();
    const float binsPerHertz = static_cast<float>(size) / _sampleRate;
    const float scale = 4.F / static_cast<float>(size); // Hann window: half the amplitude is lost
    const auto lastIndex = size / 2 - 1;
    const auto lastBin = static_cast<float>(lastIndex);
    const auto power = [this](float bin) {
        const auto lower = static_cast<std::size_t>(bin);
        const float part = bin - static_cast<float>(lower);
        return (1.F - part) * std::norm(_work[lower]) + part * std::norm(_work[lower + 1]);
    };
    for (std::size_t band = 0; band < SpectrumBands; ++band) {
        const float from = std::min(edgeHertz(band) * binsPerHertz, lastBin);
        const float to = std::min(edgeHertz(band + 1) * binsPerHertz, lastBin);
        if (from >= lastBin) {
            bands[band] = SpectrumFloorDecibels; // above half the sample rate there is nothing
            continue;
        }
        // Low bands are narrower than a bin and read between bins, high ones take their peak.
        float most = power(0.5F * (from + to));
        for (auto bin = static_cast<std::size_t>(std::ceil(from)); static_cast<float>(bin) < to; ++bin) {
            most = std::max(most, std::norm(_work[bin]));
        }
        bands[band] = std::max(10.F * std::log10(most * scale * scale + 1e-12F), SpectrumFloorDecibels);
    }
}

} // namespace tonewright::effect
