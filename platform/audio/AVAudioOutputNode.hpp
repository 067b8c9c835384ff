// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The end of the graph: what reaches this node is heard. Any thread.
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

    /// Returns the format of the output device (`outputFormatForBus:`; there is only bus 0): 48 kHz stereo as
    /// long as it is not known. Can be called at any time.
    [[nodiscard]] AVAudioFormat outputFormatForBus(std::uint32_t bus) const;

  private:
    const std::shared_ptr<OutputDevice> _device;
};

} // namespace platform
