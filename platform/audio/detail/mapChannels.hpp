// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// From one number of channels to another. Any thread, the audio thread too.
#pragma once

#include <cstdint>

namespace platform {

/// Maps `frames` frames of `inputs` onto `outputs`; no plane of one is a plane of the other. One channel goes
/// to both sides of a pair at full level; a pair becomes one channel as its mean, so that what was made from
/// one channel comes back unchanged; of more channels a pair takes the centre and its own rear side at -3 dB.
/// Channels without a counterpart are silent.
void mapChannels(const float* const* inputs, std::uint32_t inputChannels, float* const* outputs,
                 std::uint32_t outputChannels, std::uint32_t frames) noexcept;

} // namespace platform
