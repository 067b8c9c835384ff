// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Creates an output through RtAudio (JACK, PulseAudio or ALSA), for machines without a running PipeWire.
#pragma once

#include "platform/audio/devices/HardwareDevice.hpp"

namespace platform {

[[nodiscard]] std::unique_ptr<HardwareDevice> makeRtAudioDevice();

} // namespace platform
