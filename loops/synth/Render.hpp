// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Renders a recipe to samples: renders every track, mixes the tracks, and scales the mix to the common
// loudness. A pure function, callable from any thread; a recipe renders to the same bits on every machine.
#pragma once

#include "Recipe.hpp"

#include <array>
#include <cstdint>
#include <vector>

namespace tonewright::loops {

/// The loudness of every loop in LUFS, and the largest sample before encoding.
inline constexpr double TargetLoudness = -14.0;
inline constexpr double PeakCeiling = 0.84; // -1.5 dBFS, so that the encoder's error cannot exceed full scale

/// The finished samples of a loop.
struct Pcm {
    int rate = 44100;
    std::vector<std::vector<float>> channels; // one or two, of equal length

    [[nodiscard]] std::size_t frames() const noexcept {
        return channels.empty() ? 0 : channels.front().size();
    }
};

/// Renders a recipe.
[[nodiscard]] Pcm render(const Recipe& recipe);

/// Returns a checksum (FNV-1a, 64 bits) of the bits of all samples, channel by channel.
[[nodiscard]] std::uint64_t checksum(const Pcm& pcm) noexcept;

} // namespace tonewright::loops
