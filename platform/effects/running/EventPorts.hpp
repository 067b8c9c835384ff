// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A plug-in's atom ports: MIDI and other events, and the messages between the plug-in and its interface.
#pragma once

#include "platform/effects/detail/MidiSink.hpp"
#include "platform/effects/lv2/eventQueues.hpp"
#include "platform/effects/process/MessageMemory.hpp"
#include "platform/realtime/ByteRing.hpp"

#include <atomic>
#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

namespace platform::lv2 {

class EventPorts {
  public:
    explicit EventPorts(const std::vector<Port>& ports);

    /// No `run` may be in progress.
    void connect(LilvInstance* instance);
    /// Clears the ports and adds the queued events to the inputs, before a run. Audio thread.
    void beforeRun() noexcept;
    /// Passes the output events to `midi` and to the interface, after a run that began at frame `sampleTime`.
    /// Audio thread.
    void afterRun(std::int64_t sampleTime, std::uint32_t frames, MidiSink* midi) noexcept;

    /// Returns the size of the largest port buffer in bytes.
    [[nodiscard]] std::uint32_t sequenceBytes() const noexcept { return _sequenceBytes; }

    /// Queues an atom (header and body) for an atom input. Returns false if `port` is not an atom input or
    /// the queue is full. Control side.
    bool send(std::uint32_t port, std::span<const std::byte> atom);
    /// Sets whether events of the atom outputs are queued for an interface. Control side.
    void setListening(bool isListening) noexcept { _listener = isListening ? ++_lastListener : 0; }
    /// Removes the next event for the current interface from the queue and stores its port index and atom.
    /// Returns false if there is none. Events for a previous interface are dropped. One control-side thread
    /// only.
    bool receive(std::uint32_t& port, std::vector<std::byte>& atom);

    /// Exchanges the interface's atoms with the host through this memory, which outlives the ports, instead
    /// of `send` and `receive`. Call before any run.
    void useMessages(const MessageMemory& messages) {
        _shared.emplace(Shared{messages.toProcess(), messages.toHost(), messages.header().listener});
    }

  private:
    struct AtomPort {
        std::uint32_t index;
        bool supportsMidi;
        std::vector<std::uint64_t> memory; // atoms must be 8-byte aligned
        [[nodiscard]] LV2_Atom_Sequence* sequence() noexcept {
            return reinterpret_cast<LV2_Atom_Sequence*>(memory.data());
        }
        [[nodiscard]] std::uint32_t capacity() const noexcept {
            return static_cast<std::uint32_t>(memory.size() * sizeof(std::uint64_t));
        }
    };
    AtomPort* inputNamed(std::uint32_t index) noexcept;
    void takeSentEvents(auto& queue) noexcept;
    void handOut(AtomPort& port, std::int64_t sampleTime, std::uint32_t frames, MidiSink* midi) noexcept;

    std::uint32_t _sequenceBytes;
    std::vector<AtomPort> _inputs, _outputs; // their memory belongs to the audio thread
    std::mutex _sendMutex;                   // serialises the senders; control side only
    ByteRing _toPlugin;                      // records: port index and atom
    std::atomic<std::uint32_t> _listener{0}; // the interface for which events are queued; 0 if none
    std::uint32_t _lastListener = 0;         // control side
    ByteRing _toInterface;                   // records: EventHead and atom
    struct Shared {
        SharedRing toPlugin, toInterface;
        const std::atomic<std::uint32_t>& listener;
    };
    std::optional<Shared> _shared; // in an effect's process: used in place of the members of the same names
};

} // namespace platform::lv2
