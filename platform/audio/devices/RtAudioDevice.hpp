// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// JACK, PulseAudio or ALSA, by RtAudio: for machines on which no PipeWire answers.
#pragma once

#include "platform/audio/devices/HardwareDevice.hpp"

namespace platform {

[[nodiscard]] std::unique_ptr<HardwareDevice> makeRtAudioDevice();

} // namespace platform
