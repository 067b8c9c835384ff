// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Which of a plug-in's audio and CV ports carry the signal: the first two audio inputs that are no side chain
// (all audio inputs count if each is a side chain), and the first two audio outputs. The others are connected
// to silence. Any thread.
#pragma once

#include "platform/effects/lv2/Plugin.hpp"

#include <cstdint>
#include <vector>

namespace platform::lv2 {

struct SignalPorts {
    std::vector<std::uint32_t> inputs, outputs;              // port indices, by channel
    std::vector<std::uint32_t> silentInputs, unheardOutputs; // all other audio and CV ports

    explicit SignalPorts(const std::vector<Port>& ports);
};

} // namespace platform::lv2
