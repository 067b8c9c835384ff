// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/AudioPorts.hpp"

#include "platform/effects/running/Features.hpp"

#include <algorithm>

namespace platform::lv2 {
AudioPorts::AudioPorts(const std::vector<Port>& ports)
    : AudioPorts(SignalPorts(ports)) {}

AudioPorts::AudioPorts(SignalPorts ports)
    : _silentInputs(std::move(ports.silentInputs))
    , _unheardOutputs(std::move(ports.unheardOutputs))
    , _silence(LongestBlock)
    , _scratch(LongestBlock) {
    const auto add = [](std::vector<SignalPort>& list, std::uint32_t index) {
        list.push_back({index, nullptr, std::vector<float>(LongestBlock)});
    };
    for (const std::uint32_t index : ports.inputs) add(_inputs, index);
    for (const std::uint32_t index : ports.outputs) add(_outputs, index);
}

void AudioPorts::connect(LilvInstance* instance) {
    for (const std::uint32_t port : _silentInputs) {
        lilv_instance_connect_port(instance, port, _silence.data());
    }
    for (const std::uint32_t port : _unheardOutputs) {
        lilv_instance_connect_port(instance, port, _scratch.data());
    }
    // Some plug-ins access their audio ports in `activate`, before the first block.
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
        // LV2 uses non-const pointers for inputs too, but plug-ins do not write to them.
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
