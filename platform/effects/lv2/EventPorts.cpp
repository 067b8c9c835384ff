// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/EventPorts.hpp"

#include "platform/effects/lv2/UridMap.hpp"

#include <algorithm>
#include <cstring>

namespace platform::lv2 {
namespace {

constexpr std::uint32_t LeastSequence = 16384;
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

EventPorts::EventPorts(const std::vector<Port>& ports)
    : _sequenceBytes(LeastSequence)
    , _toPlugin(ToPluginBytes)
    , _toInterface(toInterfaceBytes(ports)) {
    for (const Port& port : ports) {
        if (port.kind != PortKind::AtomInput && port.kind != PortKind::AtomOutput) continue;
        AtomPort atoms{port.index, port.supportsMidi,
                       std::vector<std::uint64_t>(bytesOf(port) / sizeof(std::uint64_t))};
        _sequenceBytes = std::max(_sequenceBytes, atoms.capacity());
        (port.kind == PortKind::AtomInput ? _inputs : _outputs).push_back(std::move(atoms));
    }
}

void EventPorts::connect(LilvInstance* instance) {
    for (auto* list : {&_inputs, &_outputs}) {
        for (AtomPort& port : *list) lilv_instance_connect_port(instance, port.index, port.memory.data());
    }
}

void EventPorts::beforeRun() noexcept {
    for (AtomPort& port : _inputs) {
        port.sequence()->atom = {sizeof(LV2_Atom_Sequence_Body), Urids::shared().atomSequence};
        port.sequence()->body = {};
    }
    for (AtomPort& port : _outputs) {
        port.sequence()->atom = {port.capacity() - static_cast<std::uint32_t>(sizeof(LV2_Atom)),
                                 Urids::shared().atomChunk};
    }
    takeSentEvents();
}

void EventPorts::afterRun(std::int64_t sampleTime, std::uint32_t frames, MIDIOutputDelivery* midi) noexcept {
    for (AtomPort& port : _outputs) handOut(port, sampleTime, frames, midi);
}

EventPorts::AtomPort* EventPorts::inputNamed(std::uint32_t index) noexcept {
    const auto found = std::find_if(_inputs.begin(), _inputs.end(),
                                    [index](const AtomPort& port) { return port.index == index; });
    return found == _inputs.end() ? nullptr : &*found;
}

void EventPorts::takeSentEvents() noexcept {
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

void EventPorts::handOut(AtomPort& port, std::int64_t sampleTime, std::uint32_t frames,
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

bool EventPorts::send(std::uint32_t port, std::span<const std::byte> atom) {
    if (inputNamed(port) == nullptr) return false;
    const std::scoped_lock lock(_sendMutex);
    return _toPlugin.write(std::as_bytes(std::span(&port, 1)), atom);
}

bool EventPorts::receive(std::uint32_t& port, std::vector<std::byte>& atom) {
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

} // namespace platform::lv2
