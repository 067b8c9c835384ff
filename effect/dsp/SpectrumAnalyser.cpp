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
    : sampleRate_{static_cast<float>(sampleRate)} {
    // About 43 ms whatever the rate.
    const std::size_t size = std::bit_ceil(static_cast<std::size_t>(sampleRate / 30.));
    ring_.assign(size, 0.F);
    window_.resize(size);
    work_.resize(size);
    twiddles_.resize(size / 2);
    constexpr float Turn = 2.F * std::numbers::pi_v<float>;
    for (std::size_t i = 0; i < size; ++i) {
        window_[i] = 0.5F - 0.5F * std::cos(Turn * static_cast<float>(i) / static_cast<float>(size));
    }
    for (std::size_t i = 0; i < size / 2; ++i) {
        twiddles_[i] = std::polar(1.F, -Turn * static_cast<float>(i) / static_cast<float>(size));
    }
}

void SpectrumAnalyser::reset() noexcept {
    std::fill(ring_.begin(), ring_.end(), 0.F);
}

// Radix-2 decimation in time, in place. Written out in real arithmetic: the library's complex
// product checks for infinities on every call.
void SpectrumAnalyser::transform() noexcept {
    const std::size_t size = work_.size();
    for (std::size_t i = 1, j = 0; i < size; ++i) {
        std::size_t bit = size >> 1U;
        for (; (j & bit) != 0; bit >>= 1U) {
            j ^= bit;
        }
        j ^= bit;
        if (i < j) {
            std::swap(work_[i], work_[j]);
        }
    }
    for (std::size_t half = 1; half < size; half *= 2) {
        const std::size_t stride = size / (2 * half);
        for (std::size_t start = 0; start < size; start += 2 * half) {
            for (std::size_t k = 0; k < half; ++k) {
                const std::complex<float> w = twiddles_[k * stride];
                const std::complex<float> a = work_[start + k];
                const std::complex<float> b = work_[start + k + half];
                const std::complex<float> turned{b.real() * w.real() - b.imag() * w.imag(),
                                                 b.real() * w.imag() + b.imag() * w.real()};
                work_[start + k] = a + turned;
                work_[start + k + half] = a - turned;
            }
        }
    }
}

void SpectrumAnalyser::analyse(Spectrum& bands) noexcept {
    const std::size_t size = ring_.size();
    for (std::size_t i = 0; i < size; ++i) {
        work_[i] = ring_[(write_ + i) & (size - 1)] * window_[i];
    }
    transform();
    const float binsPerHertz = static_cast<float>(size) / sampleRate_;
    const float scale = 4.F / static_cast<float>(size); // Hann window: half the amplitude is lost
    const auto lastIndex = size / 2 - 1;
    const auto lastBin = static_cast<float>(lastIndex);
    const auto power = [this](float bin) {
        const auto lower = static_cast<std::size_t>(bin);
        const float part = bin - static_cast<float>(lower);
        return (1.F - part) * std::norm(work_[lower]) + part * std::norm(work_[lower + 1]);
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
            most = std::max(most, std::norm(work_[bin]));
        }
        bands[band] = std::max(10.F * std::log10(most * scale * scale + 1e-12F), SpectrumFloorDecibels);
    }
}

} // namespace tonewright::effect
