// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Conversion between channel counts. Any thread, including the audio thread.
#pragma once

#include "platform/realtime/PlanarView.hpp"

namespace platform {

/// Maps the first `outputs.frames()` frames of `inputs` to the channels of `outputs`; their planes must not
/// overlap. Mono is copied to the first two output channels at full level. Several channels are averaged to
/// mono, so that mono converted to stereo and back is unchanged. More than two channels are mixed down to
/// stereo: each side receives the centre and its rear channel at -3 dB. In all other cases channels are
/// copied, and output channels without an input are silent.
void mapChannels(ConstPlanarSound inputs, PlanarSound outputs) noexcept;

} // namespace platform
