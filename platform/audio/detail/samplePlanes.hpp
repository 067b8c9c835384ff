// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Conversion of a decoder's samples to planes of floats, nominally in the range -1 to 1.
#pragma once

#include "platform/realtime/PlanarView.hpp"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace platform {

/// Returns whether `value` is neither infinity nor NaN. Uses integer arithmetic, which compilers vectorise.
[[nodiscard]] inline bool isFinite(float value) noexcept {
    return (std::bit_cast<std::uint32_t>(value) & 0x7f800000U) != 0x7f800000U;
}

/// The bits of four samples, as one vector.
using FourSamples [[gnu::vector_size(16)]] = std::uint32_t;

/// Returns all ones for each of the four samples at `samples` that is not finite, and 0 for the others.
[[nodiscard]] inline FourSamples findBadSamples(const float* samples, FourSamples& bits) noexcept {
    std::memcpy(&bits, samples, sizeof bits);
    return reinterpret_cast<FourSamples>((bits & 0x7f800000U) == 0x7f800000U);
}

/// Returns whether all of the `count` samples are finite.
[[nodiscard]] inline bool allFinite(const float* samples, std::uint32_t count) noexcept {
    FourSamples bits;
    FourSamples bad{};
    std::uint32_t i = 0;
    for (; i + 16 <= count; i += 16) {
        bad |= findBadSamples(samples + i, bits) | findBadSamples(samples + i + 4, bits);
        bad |= findBadSamples(samples + i + 8, bits) | findBadSamples(samples + i + 12, bits);
    }
    std::uint32_t anyBad = bad[0] | bad[1] | bad[2] | bad[3];
    for (; i < count; ++i) anyBad |= isFinite(samples[i]) ? 0U : 1U;
    return anyBad == 0;
}

/// Copies `count` samples and replaces non-finite values by 0.
inline void copyFinite(const float* source, float* plane, std::uint32_t count) noexcept {
    std::uint32_t i = 0;
    for (; i + 16 <= count; i += 16) {
        for (std::uint32_t k = i; k < i + 16; k += 4) {
            FourSamples bits;
            const FourSamples bad = findBadSamples(source + k, bits);
            bits &= ~bad;
            std::memcpy(plane + k, &bits, sizeof bits);
        }
    }
    for (; i < count; ++i) plane[i] = isFinite(source[i]) ? source[i] : 0.0F;
}

template <class Sample>
[[nodiscard]] inline float sampleToFloat(Sample sample) noexcept {
    if constexpr (std::is_same_v<Sample, float>) {
        return isFinite(sample) ? sample : 0.0F;
    } else if constexpr (std::is_same_v<Sample, double>) {
        return sampleToFloat(static_cast<float>(sample));
    } else if constexpr (std::is_same_v<Sample, std::uint8_t>) {
        return (static_cast<float>(sample) - 128.0F) * 0x1p-7F;
    } else if constexpr (std::is_same_v<Sample, std::int16_t>) {
        return static_cast<float>(sample) * 0x1p-15F;
    } else if constexpr (std::is_same_v<Sample, std::int32_t>) {
        return static_cast<float>(sample) * 0x1p-31F;
    } else {
        return static_cast<float>(static_cast<double>(sample) * 0x1p-63); // 64-bit integers
    }
}

/// Converts `count` samples that are `Stride` elements apart, or `stride` if `Stride` is 0, into a plane.
template <std::size_t Stride, class Sample>
inline void copyToPlane(const Sample* source, std::size_t stride, float* plane,
                        std::uint32_t count) noexcept {
    const std::size_t step = Stride == 0 ? stride : Stride;
    for (std::uint32_t i = 0; i < count; ++i) plane[i] = sampleToFloat(source[i * step]);
}

/// Fills `sound` with the samples of a decoded frame, planar or interleaved, from index `first` on.
template <class Sample>
inline void copyToPlanes(const std::uint8_t* const* data, bool planar, std::uint32_t first,
                         PlanarSound sound) noexcept {
    const std::uint32_t channels = sound.channels();
    for (std::uint32_t channel = 0; channel < channels; ++channel) {
        float* const plane = sound[channel];
        if (planar || channels == 1) {
            const auto* source = reinterpret_cast<const Sample*>(data[channel]) + first;
            if constexpr (std::is_same_v<Sample, float>) {
                copyFinite(source, plane, sound.frames());
            } else {
                copyToPlane<1>(source, 1, plane, sound.frames());
            }
        } else {
            const auto* source = reinterpret_cast<const Sample*>(data[0]) +
                                 static_cast<std::size_t>(first) * channels + channel;
            if (channels == 2) {
                copyToPlane<2>(source, 2, plane, sound.frames());
            } else {
                copyToPlane<0>(source, channels, plane, sound.frames());
            }
        }
    }
}

} // namespace platform
