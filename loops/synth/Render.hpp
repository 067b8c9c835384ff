// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// From a recipe to its samples: every track alone, then together, then made as loud as all the others.
// Pure; the same recipe gives the same bits everywhere. Any thread.
#pragma once

#include "Recipe.hpp"

#include <array>
#include <cstdint>
#include <vector>

namespace tonewright::loops {

/// Every loop's loudness (LUFS) and the greatest sample it may hold.
inline constexpr double TargetLoudness = -14.0;
inline constexpr double PeakCeiling = 0.84; // -1.5 dBFS: what the encoder adds stays below full scale

/// The finished samples of a loop.
struct Pcm {
    int rate = 44100;
    std::vector<std::vector<float>> channels; // one or two, of equal length

    [[nodiscard]] std::size_t frames() const noexcept {
        return channels.empty() ? 0 : channels.front().size();
    }
};

/// Plays a recipe.
[[nodiscard]] Pcm render(const Recipe& recipe);

/// Returns a checksum (FNV-1a, 64 bits) of the samples' bits, channel after channel.
[[nodiscard]] std::uint64_t checksum(const Pcm& pcm) noexcept;

} // namespace tonewright::loops
