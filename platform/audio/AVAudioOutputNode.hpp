// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The last node of the graph, whose input is played by the output device. Any thread.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/audio/AVAudioNode.hpp"

#include <cstdint>
#include <memory>

namespace platform {

class OutputDevice;

class AVAudioOutputNode final : public AVAudioNode {
  public:
    explicit AVAudioOutputNode(std::shared_ptr<OutputDevice> device)
        : _device(std::move(device)) {}

    /// Returns the format of the output device (`outputFormatForBus:`; only bus 0 exists), or 48 kHz stereo
    /// as long as the device's format is not known.
    [[nodiscard]] AVAudioFormat outputFormatForBus(std::uint32_t bus) const;

  private:
    const std::shared_ptr<OutputDevice> _device;
};

} // namespace platform
