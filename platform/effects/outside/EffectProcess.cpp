// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/outside/EffectProcess.hpp"

#include "platform/effects/lv2/eventQueues.hpp"
#include "platform/realtime/RealtimeScope.hpp"

#include <array>
#include <cerrno>
#include <cstring>
#include <lv2/atom/atom.h>
#include <sys/socket.h>

namespace platform::lv2 {

Result<std::unique_ptr<EffectProcess>> EffectProcess::start(const Plugin& plugin,
                                                            const BlockMemory::Shape& shape) {
    auto memory = BlockMemory::create(shape);
    if (!memory) return memory.error();
    auto messages = MessageMemory::create(ToPluginBytes, toInterfaceBytes(plugin.ports));
    if (!messages) return messages.error();
    std::unique_ptr<EffectProcess> process(
        new EffectProcess(plugin, std::move(memory.value()), std::move(messages.value())));
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        const char* reason = ::strerrordesc_np(errno);
        return Error("LV2", 5,
                     "There is no connection to the effect \"" + plugin.name + "\" (" +
                         (reason != nullptr ? reason : "unknown error") + ").");
    }
    process->_socket = Descriptor(ends[0]);
    const Descriptor theirs(ends[1]), urids = process->_urids->connect();
    auto child = ChildProcess::start(
        plugin.name,
        {plugin.uri, std::to_string(shape.inputs), std::to_string(shape.outputs),
         std::to_string(shape.ports)},
        {theirs.get(), process->_memory.descriptor(), urids.get(), process->_messages.descriptor()});
    if (!child) return child.error();
    process->_child = std::move(child.value());
    return process;
}

Result<std::string> EffectProcess::ask(Message request, const std::string& text, std::chrono::seconds limit) {
    const std::scoped_lock lock(_mutex);
    const auto failure = [this](const std::string& reason) {
        return Error("LV2", 5, "The effect \"" + _name + "\" cannot be used: " + reason + ".");
    };
    request.number = ++_lastNumber;
    if (!sendMessage(_socket.get(), request, text)) return failure("its process does not accept requests");
    const auto deadline = std::chrono::steady_clock::now() + limit;
    const auto answer = receiveMessage(_socket.get(), deadline);
    if (!answer || answer->message.number != request.number || answer->message.request != request.request) {
        kill(); // a process that answers later, or sends something else, is no longer reliable
        return failure(std::chrono::steady_clock::now() >= deadline
                           ? "its process has not answered in " + std::to_string(limit.count()) + " seconds"
                           : "its process has ended");
    }
    if (answer->message.flag == 0) return Error("LV2", 5, answer->text);
    return answer->text;
}

void EffectProcess::place(const Placement& placement) noexcept {
    BlockHeader& header = _memory.header();
    if (header.placement.load(std::memory_order_relaxed) == placement) return;
    header.placement.store(placement, std::memory_order_relaxed);
    header.request.fetch_add(1, std::memory_order_release);
    const ForeignCodeScope waking;
    wake(header.request);
}

EffectProcess::Outcome EffectProcess::render(std::uint32_t frames, std::int64_t sampleTime,
                                             Deadline deadline) noexcept {
    BlockHeader& header = _memory.header();
    FutexWord& turn = header.turn.word;
    if (const std::uint32_t held = turn.load(std::memory_order_acquire); held != 0) {
        return OwnedWord::isAbandoned(held) ? Outcome::Ended : Outcome::Late;
    }
    header.frames = frames;
    header.sampleTime = sampleTime;
    turn.store(OwnedWord::ownedBy(header.thread.load(std::memory_order_relaxed)));
    if (OwnedWord::isAbandoned(header.alive.word.load())) return Outcome::Ended;
    header.request.fetch_add(1, std::memory_order_release);
    const ForeignCodeScope theOneWait;
    wake(header.request);
    while (true) {
        const std::uint32_t held = turn.load(std::memory_order_acquire);
        if (held == 0) return Outcome::Done;
        if (OwnedWord::isAbandoned(held)) return Outcome::Ended;
        if (deadline && std::chrono::steady_clock::now() >= *deadline) return Outcome::Late;
        waitOn(turn, held, deadline);
    }
}

bool EffectProcess::sendAtom(std::uint32_t port, std::span<const std::byte> atom) {
    const std::scoped_lock lock(_sendMutex);
    return _toEffect.write(std::as_bytes(std::span(&port, 1)), atom);
}

bool EffectProcess::receiveAtom(std::uint32_t& port, std::vector<std::byte>& atom, std::uint32_t listener) {
    for (; _fromEffect.hasRecord(); _fromEffect.drop()) {
        EventHead head{};
        LV2_Atom atomHead{};
        const std::size_t size = _fromEffect.recordSize();
        if (size < sizeof head + sizeof atomHead) continue;
        _fromEffect.peek(std::as_writable_bytes(std::span(&head, 1)));
        if (head.listener != listener) continue; // meant for an interface that is closed
        atom.resize(size - sizeof head);
        _fromEffect.peek(sizeof head, atom);
        std::memcpy(&atomHead, atom.data(), sizeof atomHead);
        if (atomHead.size != atom.size() - sizeof atomHead) continue;
        port = head.port;
        _fromEffect.drop();
        return true;
    }
    return false;
}

} // namespace platform::lv2
