// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A node that adds any number of inputs, at the output device's sample rate and channel count.
#pragma once

#include "platform/audio/AVAudioNode.hpp"

namespace platform {

class AVAudioMixerNode final : public AVAudioNode {
  public:
    AVAudioMixerNode() = default;
    [[nodiscard]] bool takesManyInputs() const noexcept override { return true; }
};

} // namespace platform
