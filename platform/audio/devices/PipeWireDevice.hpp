// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Creates a stream to a PipeWire server. The stream requests blocks of 256 frames, or of the length set in
// the environment variable PIPEWIRE_LATENCY, within the server's limits. Its sample rate is the server's.
#pragma once

#include "platform/audio/devices/HardwareDevice.hpp"

namespace platform {

[[nodiscard]] std::unique_ptr<HardwareDevice> makePipeWireDevice();

} // namespace platform
