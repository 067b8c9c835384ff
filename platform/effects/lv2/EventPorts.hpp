// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A plug-in's atom ports: MIDI and other events in and out, and what it exchanges with its interface.
#pragma once

#include "platform/effects/detail/MIDIOutputDelivery.hpp"
#include "platform/effects/lv2/Plugin.hpp"
#include "platform/realtime/ByteRing.hpp"

#include <atomic>
#include <lilv/lilv.h>
#include <lv2/atom/atom.h>
#include <mutex>
#include <span>
#include <vector>

namespace platform::lv2 {

class EventPorts {
  public:
    explicit EventPorts(const std::vector<Port>& ports);

    /// No `run` may be in progress.
    void connect(LilvInstance* instance);
    /// Applies what was sent, before a run. Audio side.
    void beforeRun() noexcept;
    /// Passes on the run's output; its first frame is frame `sampleTime` of the engine. Audio side.
    void afterRun(std::int64_t sampleTime, std::uint32_t frames, MIDIOutputDelivery* midi) noexcept;

    /// Returns the bytes that the largest port holds.
    [[nodiscard]] std::uint32_t sequenceBytes() const noexcept { return _sequenceBytes; }

    /// Queues one atom, head and body, for an atom input; false if it does not fit. Control side.
    bool send(std::uint32_t port, std::span<const std::byte> atom);
    /// Keeps the events of the atom outputs for an interface, or stops that. Control side.
    void setListening(bool isListening) noexcept { _listener = isListening ? ++_lastListener : 0; }
    /// Takes the next event of an atom output for the current interface: the number of its port and the atom.
    /// Those kept for a previous one are dropped. One control-side thread.
    bool receive(std::uint32_t& port, std::vector<std::byte>& atom);

  private:
    struct AtomPort {
        std::uint32_t index;
        bool supportsMidi;
        std::vector<std::uint64_t> memory; // 8-byte aligned, as atoms must be
        [[nodiscard]] LV2_Atom_Sequence* sequence() noexcept {
            return reinterpret_cast<LV2_Atom_Sequence*>(memory.data());
        }
        [[nodiscard]] std::uint32_t capacity() const noexcept {
            return static_cast<std::uint32_t>(memory.size() * sizeof(std::uint64_t));
        }
    };
    AtomPort* inputNamed(std::uint32_t index) noexcept;
    void takeSentEvents() noexcept;
    void handOut(AtomPort& port, std::int64_t sampleTime, std::uint32_t frames,
                 MIDIOutputDelivery* midi) noexcept;

    std::uint32_t _sequenceBytes;
    std::vector<AtomPort> _inputs, _outputs; // their memory: audio side
    std::mutex _sendMutex;                   // makes all senders one writer; control side only
    ByteRing _toPlugin;                      // port number and atom
    std::atomic<std::uint32_t> _listener{0}; // the interface for which events are kept; 0: none
    std::uint32_t _lastListener = 0;         // control side
    struct EventHead {
        std::uint32_t port;
        std::uint32_t listener;
    };
    ByteRing _toInterface; // EventHead and atom
};

} // namespace platform::lv2
