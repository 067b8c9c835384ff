// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/SignalPorts.hpp"

#include <algorithm>

namespace platform::lv2 {

SignalPorts::SignalPorts(const std::vector<Port>& ports) {
    constexpr std::size_t MainChannels = 2;
    const bool hasSignalInput = std::any_of(ports.begin(), ports.end(), [](const Port& port) {
        return port.kind == PortKind::AudioInput && !port.isSideChain;
    });
    for (const Port& port : ports) {
        switch (port.kind) {
        case PortKind::AudioInput: {
            const bool isSignal = inputs.size() < MainChannels && (!port.isSideChain || !hasSignalInput);
            (isSignal ? inputs : silentInputs).push_back(port.index);
            break;
        }
        case PortKind::AudioOutput:
            (outputs.size() < MainChannels ? outputs : unheardOutputs).push_back(port.index);
            break;
        case PortKind::CvInput:
            silentInputs.push_back(port.index);
            break;
        case PortKind::CvOutput:
            unheardOutputs.push_back(port.index);
            break;
        default:
            break;
        }
    }
}

} // namespace platform::lv2
