// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A stream to a PipeWire server. Its block is 256 frames, or what PIPEWIRE_LATENCY in the environment or the
// server says; its rate is the server's.
#pragma once

#include "platform/audio/devices/HardwareDevice.hpp"

namespace platform {

[[nodiscard]] std::unique_ptr<HardwareDevice> makePipeWireDevice();

} // namespace platform
