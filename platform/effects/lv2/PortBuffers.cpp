// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/PortBuffers.hpp"

#include "platform/effects/lv2/Features.hpp"
#include "platform/effects/lv2/UridMap.hpp"

#include <algorithm>
#include <cstring>

namespace platform::lv2 {
namespace {

constexpr std::uint32_t LeastSequence = 16384;
constexpr std::uint32_t MainChannels = 2;
constexpr std::size_t ToPluginBytes = std::size_t{1} << 16U;
constexpr std::size_t LargestToInterface = std::size_t{4} << 20U;

constexpr std::uint32_t padded(std::uint32_t size) noexcept {
    return (size + 7U) & ~7U;
}

std::uint32_t bytesOf(const Port& port) {
    return padded(std::max(port.minimumSize, LeastSequence));
}

std::size_t toInterfaceBytes(const std::vector<Port>& ports) {
    std::size_t bytes = 0;
    for (const Port& port : ports) {
        if (port.kind == PortKind::AtomOutput) bytes += bytesOf(port);
    }
    return std::min(bytes * 4, LargestToInterface);
}

} // namespace

PortBuffers::PortBuffers(const std::vector<Port>& ports, double sampleRate)
    : _silence(LongestBlock)
    , _scratch(LongestBlock)
    , _cells(ports.size())
    , _values(std::make_unique<std::atomic<float>[]>(ports.size()))
    , _valueCount(ports.size())
    , _toPlugin(ToPluginBytes)
    , _toInterface(toInterfaceBytes(ports)) {
    const bool hasSignalInput = std::any_of(ports.begin(), ports.end(), [](const Port& port) {
        return port.kind == PortKind::AudioInput && !port.isSideChain;
    });
    for (const Port& port : ports) {
        switch (port.kind) {
        case PortKind::AudioInput:
            if (_inputs.size() < MainChannels && (!port.isSideChain || !hasSignalInput)) {
                _inputs.push_back({port.index, nullptr, std::vector<float>(LongestBlock)});
            } else {
                _silentInputs.push_back(port.index);
            }
            break;
        case PortKind::AudioOutput:
            if (_outputs.size() < MainChannels) {
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
        case PortKind::ControlInput:
            _controlInputs.push_back(port.index);
            _cells[port.index] = parameterAt(port, sampleRate).defaultValue;
            _values[port.index] = _cells[port.index];
            break;
        case PortKind::ControlOutput:
            _controlOutputs.push_back(port.index);
            if (port.reportsLatency) _latencyPort = port.index;
            break;
        case PortKind::AtomInput:
        case PortKind::AtomOutput: {
            AtomPort atoms{port.index, port.supportsMidi,
                           std::vector<std::uint64_t>(bytesOf(port) / sizeof(std::uint64_t))};
            _sequenceBytes = std::max(_sequenceBytes, atoms.capacity());
            (port.kind == PortKind::AtomInput ? _atomInputs : _atomOutputs).push_back(std::move(atoms));
            break;
        }
        case PortKind::Unknown:
            break;
        }
    }
    _sequenceBytes = std::max(_sequenceBytes, LeastSequence);
    _inputChannels = static_cast<std::uint32_t>(_inputs.size());
    _outputChannels = static_cast<std::uint32_t>(_outputs.size());
}

void PortBuffers::connect(LilvInstance* instance) {
    for (std::uint32_t port = 0; port < _valueCount; ++port) {
        lilv_instance_connect_port(instance, port, nullptr);
    }
    for (const auto* list : {&_controlInputs, &_controlOutputs}) {
        for (const std::uint32_t port : *list) lilv_instance_connect_port(instance, port, &_cells[port]);
    }
    for (const std::uint32_t port : _silentInputs) {
        lilv_instance_connect_port(instance, port, _silence.data());
    }
    for (const std::uint32_t port : _unheardOutputs) {
        lilv_instance_connect_port(instance, port, _scratch.data());
    }
    for (auto* list : {&_atomInputs, &_atomOutputs}) {
        for (AtomPort& port : *list) lilv_instance_connect_port(instance, port.index, port.memory.data());
    }
    // Also before the first block: some plug-ins look at their audio ports when they are activated.
    for (auto* list : {&_inputs, &_outputs}) {
        for (AudioPort& port : *list) {
            port.connected = port.own.data();
            lilv_instance_connect_port(instance, port.index, port.own.data());
        }
    }
    beforeRun();
}

void PortBuffers::connectAudio(LilvInstance* instance, ConstPlanarSound inputs, PlanarSound outputs,
                               std::uint32_t blockFrames) noexcept {
    const std::uint32_t frames = outputs.frames();
    const auto place = [&](AudioPort& port, const float* plane) {
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

void PortBuffers::takeAudio(PlanarSound outputs) noexcept {
    if (!_runsOnOwnPlanes) return;
    for (std::uint32_t i = 0; i < _outputs.size(); ++i) {
        std::copy_n(_outputs[i].own.begin(), outputs.frames(), outputs[i]);
    }
}

void PortBuffers::beforeRun() noexcept {
    if (_hasNewValues.exchange(false, std::memory_order_acquire)) {
        for (const std::uint32_t port : _controlInputs) {
            _cells[port] = _values[port].load(std::memory_order_relaxed);
        }
    }
    for (AtomPort& port : _atomInputs) {
        port.sequence()->atom = {sizeof(LV2_Atom_Sequence_Body), Urids::shared().atomSequence};
        port.sequence()->body = {};
    }
    for (AtomPort& port : _atomOutputs) {
        port.sequence()->atom = {port.capacity() - static_cast<std::uint32_t>(sizeof(LV2_Atom)),
                                 Urids::shared().atomChunk};
    }
    takeSentEvents();
}

PortBuffers::AtomPort* PortBuffers::inputNamed(std::uint32_t index) noexcept {
    const auto found = std::find_if(_atomInputs.begin(), _atomInputs.end(),
                                    [index](const AtomPort& port) { return port.index == index; });
    return found == _atomInputs.end() ? nullptr : &*found;
}

void PortBuffers::takeSentEvents() noexcept {
    while (_toPlugin.hasRecord()) {
        std::uint32_t index = 0;
        _toPlugin.peek(std::as_writable_bytes(std::span(&index, 1)));
        const auto size = static_cast<std::uint32_t>(_toPlugin.recordSize() - sizeof index);
        if (AtomPort* port = inputNamed(index); port != nullptr) {
            LV2_Atom& head = port->sequence()->atom;
            const std::uint32_t end = static_cast<std::uint32_t>(sizeof(LV2_Atom)) + padded(head.size);
            const std::uint32_t event = static_cast<std::uint32_t>(sizeof(std::int64_t)) + size;
            if (end + padded(event) > port->capacity()) {
                if (head.size > sizeof(LV2_Atom_Sequence_Body)) return; // the next run has space for it
            } else {
                auto* at = reinterpret_cast<std::byte*>(port->memory.data()) + end;
                const std::int64_t firstFrame = 0;
                std::memcpy(at, &firstFrame, sizeof firstFrame);
                _toPlugin.peek(sizeof index, std::span(at + sizeof firstFrame, size));
                head.size += padded(event);
            }
        }
        _toPlugin.drop();
    }
}

void PortBuffers::afterRun(std::int64_t sampleTime, std::uint32_t frames, MIDIOutputDelivery* midi) noexcept {
    for (const std::uint32_t port : _controlOutputs) {
        _values[port].store(_cells[port], std::memory_order_relaxed);
    }
    for (AtomPort& port : _atomOutputs) handOut(port, sampleTime, frames, midi);
}

void PortBuffers::handOut(AtomPort& port, std::int64_t sampleTime, std::uint32_t frames,
                          MIDIOutputDelivery* midi) noexcept {
    const LV2_Atom& head = port.sequence()->atom;
    if (head.type != Urids::shared().atomSequence || head.size > port.capacity() - sizeof(LV2_Atom)) return;
    const bool hasMidi = midi != nullptr && port.supportsMidi && midi->isWanted();
    const EventHead kept{port.index, _listener.load(std::memory_order_relaxed)};
    const bool isListening = kept.listener != 0;
    if (!hasMidi && !isListening) return;
    const auto* const bytes = reinterpret_cast<const std::byte*>(port.memory.data());
    const std::uint32_t end = static_cast<std::uint32_t>(sizeof(LV2_Atom)) + head.size;
    std::uint32_t at = sizeof(LV2_Atom_Sequence);
    while (at <= end && end - at >= sizeof(LV2_Atom_Event)) {
        const auto& event = *reinterpret_cast<const LV2_Atom_Event*>(bytes + at);
        const std::uint32_t room = end - at - static_cast<std::uint32_t>(sizeof(LV2_Atom_Event));
        if (event.body.size > room) return; // the plug-in wrote past its own end
        if (hasMidi && event.body.type == Urids::shared().midiEvent) {
            const std::int64_t frame = std::clamp<std::int64_t>(event.time.frames, 0, frames - 1);
            midi->push(sampleTime + frame, reinterpret_cast<const std::uint8_t*>(&event + 1),
                       event.body.size);
        }
        if (isListening) { // a full ring means an interface that does not keep up: it misses events
            (void)_toInterface.write(std::as_bytes(std::span(&kept, 1)),
                                     std::span(reinterpret_cast<const std::byte*>(&event.body),
                                               sizeof(LV2_Atom) + event.body.size));
        }
        if (padded(event.body.size) > room) return; // the last one; its padding may be missing
        at += static_cast<std::uint32_t>(sizeof(LV2_Atom_Event)) + padded(event.body.size);
    }
}

float PortBuffers::value(std::uint32_t port) const noexcept {
    return port < _valueCount ? _values[port].load(std::memory_order_relaxed) : 0.0F;
}

void PortBuffers::setValue(std::uint32_t port, float value) noexcept {
    if (port >= _valueCount) return;
    _values[port].store(value, std::memory_order_relaxed);
    _hasNewValues.store(true, std::memory_order_release);
}

void PortBuffers::limitValues(const std::vector<Port>& ports, double sampleRate) {
    for (const Port& port : ports) {
        if (port.kind != PortKind::ControlInput || !port.followsRate) continue;
        const AUParameter parameter = parameterAt(port, sampleRate);
        setValue(port.index, std::clamp(value(port.index), parameter.minValue, parameter.maxValue));
    }
}

std::uint32_t PortBuffers::latencyFrames() const noexcept {
    if (_latencyPort < 0) return 0;
    const float frames = value(static_cast<std::uint32_t>(_latencyPort));
    return frames >= 1.0F && frames < 1e9F ? static_cast<std::uint32_t>(frames) : 0U;
}

bool PortBuffers::receive(std::uint32_t& port, std::vector<std::byte>& atom) {
    while (_toInterface.hasRecord()) {
        EventHead head{};
        _toInterface.peek(std::as_writable_bytes(std::span(&head, 1)));
        atom.resize(_toInterface.recordSize() - sizeof head);
        _toInterface.peek(sizeof head, atom);
        _toInterface.drop();
        port = head.port;
        if (head.listener == _listener) return true;
    }
    return false;
}

bool PortBuffers::send(std::uint32_t port, std::span<const std::byte> atom) {
    if (inputNamed(port) == nullptr) return false;
    const std::scoped_lock lock(_sendMutex);
    return _toPlugin.write(std::as_bytes(std::span(&port, 1)), atom);
}

} // namespace platform::lv2
