// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The node that adds any number of inputs, at the output device's rate and number of channels.
#pragma once

#include "platform/audio/AVAudioNode.hpp"

namespace platform {

class AVAudioMixerNode final : public AVAudioNode {
  public:
    AVAudioMixerNode() = default;
    [[nodiscard]] bool takesManyInputs() const noexcept override { return true; }
};

} // namespace platform
