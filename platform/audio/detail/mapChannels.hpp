// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Conversion between numbers of channels. Any thread, including the audio thread.
#pragma once

#include "platform/realtime/PlanarView.hpp"

namespace platform {

/// Maps as many frames of `inputs` as `outputs` has to these; their planes must be distinct. One channel goes
/// to both sides of a pair at full level; a pair becomes one channel as its mean, so that a sound made from
/// one channel comes back unchanged; of more channels a pair takes the centre and its own rear side at -3 dB.
/// Channels without a counterpart are silent.
void mapChannels(ConstPlanarSound inputs, PlanarSound outputs) noexcept;

} // namespace platform
