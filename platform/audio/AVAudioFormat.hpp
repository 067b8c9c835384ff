// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The format of a stream of sound: float samples, one plane per channel.
#pragma once

#include <cstdint>

namespace platform {

struct AVAudioFormat {
    double sampleRate = 0;          // frames per second
    std::uint32_t channelCount = 0; // 1 or more

    friend bool operator==(const AVAudioFormat&, const AVAudioFormat&) = default;
};

} // namespace platform
