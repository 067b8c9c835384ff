// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/ControlPorts.hpp"

#include <algorithm>

namespace platform::lv2 {

ControlPorts::ControlPorts(const std::vector<Port>& ports, double sampleRate)
    : _cells(ports.size())
    , _values(std::make_unique<std::atomic<float>[]>(ports.size()))
    , _valueCount(ports.size()) {
    for (const Port& port : ports) {
        if (port.kind == PortKind::ControlInput) {
            _inputs.push_back(port.index);
            _cells[port.index] = parameterAt(port, sampleRate).defaultValue;
            _values[port.index] = _cells[port.index];
        } else if (port.kind == PortKind::ControlOutput) {
            _outputs.push_back(port.index);
            if (port.reportsLatency) _latencyPort = port.index;
        }
    }
}

void ControlPorts::connect(LilvInstance* instance) {
    for (const auto* list : {&_inputs, &_outputs}) {
        for (const std::uint32_t port : *list) lilv_instance_connect_port(instance, port, &_cells[port]);
    }
}

void ControlPorts::beforeRun() noexcept {
    // Checks with a plain load first, which is cheaper than an exchange: most blocks have no new values.
    if (!_hasNewValues.load(std::memory_order_relaxed)) return;
    if (!_hasNewValues.exchange(false, std::memory_order_acquire)) return;
    for (const std::uint32_t port : _inputs) _cells[port] = _values[port].load(std::memory_order_relaxed);
}

void ControlPorts::afterRun() noexcept {
    for (const std::uint32_t port : _outputs) _values[port].store(_cells[port], std::memory_order_relaxed);
}

float ControlPorts::value(std::uint32_t port) const noexcept {
    return port < _valueCount ? _values[port].load(std::memory_order_relaxed) : 0.0F;
}

void ControlPorts::setValue(std::uint32_t port, float value) noexcept {
    if (port >= _valueCount) return;
    _values[port].store(value, std::memory_order_relaxed);
    _hasNewValues.store(true, std::memory_order_release);
}

void ControlPorts::limitValues(const std::vector<Port>& ports, double sampleRate) {
    for (const Port& port : ports) {
        if (port.kind != PortKind::ControlInput || !port.followsRate) continue;
        const AUParameter parameter = parameterAt(port, sampleRate);
        setValue(port.index, std::clamp(value(port.index), parameter.minValue, parameter.maxValue));
    }
}

std::uint32_t ControlPorts::latencyFrames() const noexcept {
    if (_latencyPort < 0) return 0;
    const float frames = value(static_cast<std::uint32_t>(_latencyPort));
    return frames >= 1.0F && frames < 1e9F ? static_cast<std::uint32_t>(frames) : 0U;
}

} // namespace platform::lv2
