// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/AudioPorts.hpp"

#include "platform/effects/lv2/Features.hpp"

#include <algorithm>

namespace platform::lv2 {
namespace {

constexpr std::uint32_t MainChannels = 2;

} // namespace

AudioPorts::AudioPorts(const std::vector<Port>& ports)
    : _silence(LongestBlock)
    , _scratch(LongestBlock) {
    const bool hasSignalInput = std::any_of(ports.begin(), ports.end(), [](const Port& port) {
        return port.kind == PortKind::AudioInput && !port.isSideChain;
    });
    for (const Port& port : ports) {
        const bool isSignal = port.kind == PortKind::AudioInput
                                  ? _inputs.size() < MainChannels && (!port.isSideChain || !hasSignalInput)
                                  : _outputs.size() < MainChannels;
        switch (port.kind) {
        case PortKind::AudioInput:
            if (isSignal) {
                _inputs.push_back({port.index, nullptr, std::vector<float>(LongestBlock)});
            } else {
                _silentInputs.push_back(port.index);
            }
            break;
        case PortKind::AudioOutput:
            if (isSignal) {
                _outputs.push_back({port.index, nullptr, std::vector<float>(LongestBlock)});
            } else {
                _unheardOutputs.push_back(port.index);
            }
            break;
        case PortKind::CvInput:
            _silentInputs.push_back(port.index);
            break;
        case PortKind::CvOutput:
            _unheardOutputs.push_back(port.index);
            break;
        default:
            break;
        }
    }
}

void AudioPorts::connect(LilvInstance* instance) {
    for (const std::uint32_t port : _silentInputs) {
        lilv_instance_connect_port(instance, port, _silence.data());
    }
    for (const std::uint32_t port : _unheardOutputs) {
        lilv_instance_connect_port(instance, port, _scratch.data());
    }
    // Also before the first block: some plug-ins look at their audio ports when they are activated.
    for (auto* list : {&_inputs, &_outputs}) {
        for (SignalPort& port : *list) {
            port.connected = port.own.data();
            lilv_instance_connect_port(instance, port.index, port.own.data());
        }
    }
}

void AudioPorts::connectSignal(LilvInstance* instance, ConstPlanarSound inputs, PlanarSound outputs,
                               std::uint32_t blockFrames) noexcept {
    const std::uint32_t frames = outputs.frames();
    const auto place = [&](SignalPort& port, const float* plane) {
        if (port.connected == plane) return;
        port.connected = plane;
        // LV2 has one kind of pointer for both directions; a plug-in does not write to an input.
        lilv_instance_connect_port(instance, port.index, const_cast<float*>(plane));
    };
    _runsOnOwnPlanes = frames < blockFrames;
    for (std::uint32_t i = 0; i < _inputs.size(); ++i) {
        if (_runsOnOwnPlanes) {
            const auto rest = std::copy_n(inputs[i], frames, _inputs[i].own.begin());
            std::fill_n(rest, blockFrames - frames, 0.0F);
        }
        place(_inputs[i], _runsOnOwnPlanes ? _inputs[i].own.data() : inputs[i]);
    }
    for (std::uint32_t i = 0; i < _outputs.size(); ++i) {
        place(_outputs[i], _runsOnOwnPlanes ? _outputs[i].own.data() : outputs[i]);
    }
}

void AudioPorts::takeSignal(PlanarSound outputs) noexcept {
    if (!_runsOnOwnPlanes) return;
    for (std::uint32_t i = 0; i < _outputs.size(); ++i) {
        std::copy_n(_outputs[i].own.begin(), outputs.frames(), outputs[i]);
    }
}

} // namespace platform::lv2
