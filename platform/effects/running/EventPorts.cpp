// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/running/EventPorts.hpp"

#include "platform/effects/lv2/UridMap.hpp"

#include <algorithm>
#include <cstring>

namespace platform::lv2 {
namespace {

constexpr std::uint32_t padded(std::uint32_t size) noexcept {
    return (size + 7U) & ~7U;
}

} // namespace

EventPorts::EventPorts(const std::vector<Port>& ports)
    : _sequenceBytes(LeastSequence)
    , _toPlugin(ToPluginBytes)
    , _toInterface(toInterfaceBytes(ports)) {
    for (const Port& port : ports) {
        if (port.kind != PortKind::AtomInput && port.kind != PortKind::AtomOutput) continue;
        AtomPort atoms{port.index, port.supportsMidi,
                       std::vector<std::uint64_t>(sequenceBytesOf(port) / sizeof(std::uint64_t))};
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
    takeSentEvents(_toPlugin);
    if (_shared) takeSentEvents(_shared->toPlugin);
}

void EventPorts::afterRun(std::int64_t sampleTime, std::uint32_t frames, MidiSink* midi) noexcept {
    for (AtomPort& port : _outputs) handOut(port, sampleTime, frames, midi);
}

EventPorts::AtomPort* EventPorts::inputNamed(std::uint32_t index) noexcept {
    const auto found = std::find_if(_inputs.begin(), _inputs.end(),
                                    [index](const AtomPort& port) { return port.index == index; });
    return found == _inputs.end() ? nullptr : &*found;
}

void EventPorts::takeSentEvents(auto& queue) noexcept {
    while (queue.hasRecord()) {
        std::uint32_t index = 0;
        queue.peek(std::as_writable_bytes(std::span(&index, 1)));
        const auto size = static_cast<std::uint32_t>(queue.recordSize() - sizeof index);
        if (AtomPort* port = inputNamed(index); port != nullptr) {
            LV2_Atom& head = port->sequence()->atom;
            const std::uint32_t end = static_cast<std::uint32_t>(sizeof(LV2_Atom)) + padded(head.size);
            const std::uint32_t event = static_cast<std::uint32_t>(sizeof(std::int64_t)) + size;
            if (end + padded(event) > port->capacity()) {
                if (head.size > sizeof(LV2_Atom_Sequence_Body)) {
                    return; // no space in this run; try again in the next
                }
            } else {
                auto* at = reinterpret_cast<std::byte*>(port->memory.data()) + end;
                const std::int64_t firstFrame = 0;
                std::memcpy(at, &firstFrame, sizeof firstFrame);
                queue.peek(sizeof index, std::span(at + sizeof firstFrame, size));
                head.size += padded(event);
            }
        }
        queue.drop();
    }
}

void EventPorts::handOut(AtomPort& port, std::int64_t sampleTime, std::uint32_t frames,
                         MidiSink* midi) noexcept {
    const LV2_Atom& head = port.sequence()->atom;
    if (head.type != Urids::shared().atomSequence || head.size > port.capacity() - sizeof(LV2_Atom)) return;
    const bool hasMidi = midi != nullptr && port.supportsMidi && midi->isWanted();
    const std::atomic<std::uint32_t>& listener = _shared ? _shared->listener : _listener;
    const EventHead kept{port.index, listener.load(std::memory_order_relaxed)};
    const bool isListening = kept.listener != 0;
    if (!hasMidi && !isListening) return;
    const auto* const bytes = reinterpret_cast<const std::byte*>(port.memory.data());
    const std::uint32_t end = static_cast<std::uint32_t>(sizeof(LV2_Atom)) + head.size;
    std::uint32_t at = sizeof(LV2_Atom_Sequence);
    while (at <= end && end - at >= sizeof(LV2_Atom_Event)) {
        const auto& event = *reinterpret_cast<const LV2_Atom_Event*>(bytes + at);
        const std::uint32_t room = end - at - static_cast<std::uint32_t>(sizeof(LV2_Atom_Event));
        if (event.body.size > room) return; // malformed: the event ends after the sequence
        if (hasMidi && event.body.type == Urids::shared().midiEvent) {
            const std::int64_t frame = std::clamp<std::int64_t>(event.time.frames, 0, frames - 1);
            midi->push(sampleTime + frame, reinterpret_cast<const std::uint8_t*>(&event + 1),
                       event.body.size);
        }
        if (isListening) { // an interface that does not keep up loses events
            const auto keptBytes = std::as_bytes(std::span(&kept, 1));
            const std::span atom(reinterpret_cast<const std::byte*>(&event.body),
                                 sizeof(LV2_Atom) + event.body.size);
            (void)(_shared ? _shared->toInterface.write(keptBytes, atom)
                           : _toInterface.write(keptBytes, atom));
        }
        if (padded(event.body.size) > room) return; // the last event, which may lack its padding
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
