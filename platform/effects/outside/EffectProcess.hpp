// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The host's side of an effect's process: starts the process, sends requests to it, lets it render blocks,
// and ends it.
#pragma once

#include "platform/effects/lv2/Plugin.hpp"
#include "platform/effects/outside/ChildProcess.hpp"
#include "platform/effects/outside/UridService.hpp"
#include "platform/effects/process/BlockMemory.hpp"
#include "platform/effects/process/MessageMemory.hpp"
#include "platform/effects/process/messages.hpp"

#include <atomic>
#include <chrono>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace platform::lv2 {

class EffectProcess {
  public:
    using Deadline = std::optional<std::chrono::steady_clock::time_point>;

    /// Starts a process for the plug-in, or returns the reason why that failed. The process has no instance
    /// of the plug-in yet.
    [[nodiscard]] static Result<std::unique_ptr<EffectProcess>> start(const Plugin& plugin,
                                                                      const BlockMemory::Shape& shape);
    EffectProcess(const EffectProcess&) = delete;
    EffectProcess& operator=(const EffectProcess&) = delete;
    /// Ends the process, whatever it is doing. Nothing renders.
    ~EffectProcess() = default;

    /// Sends a request and waits for its answer. Returns the text of the answer, or the reason why the
    /// request failed. Kills a process that does not answer within `limit`. Control side, any thread.
    [[nodiscard]] Result<std::string> ask(Message request, const std::string& text,
                                          std::chrono::seconds limit);

    /// Returns whether the process has finished its last block, if there was one. Audio side.
    [[nodiscard]] bool isFree() const noexcept {
        return _memory.header().turn.word.load(std::memory_order_acquire) == 0;
    }
    /// The result of rendering a block.
    enum class Outcome { Done, Late, Ended };
    /// Makes the process's sound thread run there from now on. Wakes the thread if that is a change; makes no
    /// other system call. Audio side.
    void place(const Placement& placement) noexcept;
    /// Lets the process render a block of `frames` frames, whose input is already in the memory, and waits
    /// until `deadline`. After Late, further calls return Late immediately until the process has finished the
    /// late block. Makes two system calls: one wakes the process, the other waits. Audio side.
    [[nodiscard]] Outcome render(std::uint32_t frames, std::int64_t sampleTime, Deadline deadline) noexcept;

    /// Queues an atom of the interface for the next block; false if it does not fit. Control side.
    bool sendAtom(std::uint32_t port, std::span<const std::byte> atom);
    /// Sets for which interface the process keeps events of the atom outputs; 0: none. Control side.
    void setListener(std::uint32_t listener) noexcept { _messages.header().listener = listener; }
    /// Takes the next event for this interface. The atom is as long as it says; what else is in it, and the
    /// port, is as the process wrote it. One thread.
    bool receiveAtom(std::uint32_t& port, std::vector<std::byte>& atom, std::uint32_t listener);

    [[nodiscard]] const BlockMemory& memory() const noexcept { return _memory; }
    /// Ends the process without waiting for that. Any thread.
    void kill() noexcept { _child->kill(); }
    /// Returns the descriptor that becomes readable when the process ends.
    [[nodiscard]] int processDescriptor() const noexcept { return _child->descriptor(); }
    /// Returns the process's proportional share of the memory that it uses, in bytes, or 0 if that is not
    /// known. Must not be called after `reasonOfEnd`.
    [[nodiscard]] std::uint64_t proportionalBytes() const { return _child->proportionalBytes(); }
    /// Returns why the process ended, for a person: "Segmentation fault"; it must have ended.
    [[nodiscard]] std::string reasonOfEnd() { return _child->reasonOfEnd(); }

  private:
    EffectProcess(const Plugin& plugin, BlockMemory memory, MessageMemory messages)
        : _name(plugin.name)
        , _memory(std::move(memory))
        , _messages(std::move(messages))
        , _toEffect(_messages.toProcess())
        , _fromEffect(_messages.toHost()) {}

    const std::string _name;
    const BlockMemory _memory;
    const MessageMemory _messages;
    std::mutex _sendMutex; // guards _toEffect
    SharedRing _toEffect, _fromEffect;
    const std::shared_ptr<UridService> _urids = UridService::shared();
    Descriptor _socket;
    std::unique_ptr<ChildProcess> _child; // null only while it is started

    std::mutex _mutex; // serialises requests
    std::uint32_t _lastNumber = 0;
};

} // namespace platform::lv2
