// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The memory through which the host and one process, of an effect's sound or of its interface, send each
// other records without waiting. Crosses processes: the queues and the words of the header.
#pragma once

#include "platform/effects/process/SharedRing.hpp"
#include "platform/foundation/Descriptor.hpp"
#include "platform/foundation/Result.hpp"

namespace platform::lv2 {

struct MessageHeader {
    std::atomic<std::uint32_t> listener{0}; // the interface for which events are sent; 0: none. By the host.
    std::atomic<std::uint32_t> beats{0};    // counts the idle calls of an interface; by its process
    std::uint32_t bytesToProcess = 0, bytesToHost = 0; // sizes of the queues; by the host, at first
    RingCounters toProcess, toHost;
};

class MessageMemory {
  public:
    /// Creates memory with queues of at least these sizes in bytes, or returns the reason why not. The host.
    [[nodiscard]] static Result<MessageMemory> create(std::size_t bytesToProcess, std::size_t bytesToHost);
    /// Maps what the host created. The other process.
    [[nodiscard]] static Result<MessageMemory> open(Descriptor file);
    MessageMemory(MessageMemory&& other) noexcept;
    MessageMemory& operator=(MessageMemory&&) = delete;
    ~MessageMemory();

    [[nodiscard]] int descriptor() const noexcept { return _file.get(); }
    [[nodiscard]] MessageHeader& header() const noexcept { return *_header; }
    /// Return an end of a queue. Each side takes one end of each queue, once.
    [[nodiscard]] SharedRing toProcess() const noexcept;
    [[nodiscard]] SharedRing toHost() const noexcept;

  private:
    MessageMemory(Descriptor file, std::byte* memory, std::size_t bytesToProcess, std::size_t bytesToHost);

    Descriptor _file;
    std::byte* _memory;
    std::size_t _bytesToProcess, _bytesToHost; // the host does not read them from the memory
    MessageHeader* _header;
};

/// A record between the host and an interface's process: this, and the atom, if it is one.
struct InterfaceRecord {
    enum class Kind : std::uint32_t {
        Value, // `value` of the control port `port`
        Atom,  // for the atom port `port`, or from it
        Size,  // the interface requests `port` x `taken` device pixels
    };
    Kind kind = Kind::Value;
    std::uint32_t port = 0;
    std::uint32_t taken = 0; // of a value for the interface: how many of its values the host has taken
    float value = 0;
};

} // namespace platform::lv2
