// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/child/EffectServer.hpp"

#include "platform/realtime/DenormalScope.hpp"

#include <future>
#include <sched.h>
#include <thread>
#include <unistd.h>

namespace platform::lv2 {
namespace {

// Moves the calling thread to where the host wants it, as far as the kernel allows. `all` contains the
// processors on which the thread may run if the host does not name one.
void place(const Placement& placement, const cpu_set_t& all) noexcept {
    cpu_set_t wanted = all;
    if (placement.processor >= 0 && placement.processor < CPU_SETSIZE) {
        CPU_ZERO(&wanted);
        CPU_SET(static_cast<std::size_t>(placement.processor), &wanted);
    }
    ::sched_setaffinity(0, sizeof wanted, &wanted);
    sched_param parameter{};
    parameter.sched_priority = placement.priority;
    ::sched_setscheduler(0, placement.priority > 0 ? SCHED_FIFO : SCHED_OTHER, &parameter);
}

} // namespace

void EffectServer::run() {
    while (const auto request = receiveMessage(_socket)) {
        const Answer result = answer(*request);
        Message reply = request->message;
        reply.flag = result.isDone ? 1 : 0;
        if (!sendMessage(_socket, reply, result.text)) return;
    }
}

EffectServer::Answer EffectServer::answer(const ReceivedMessage& request) {
    const Message& message = request.message;
    if (message.request == Request::Make) return make(message);
    if (!_processor) return {false, "There is no effect."};
    switch (message.request) {
    case Request::Make:
        break;
    case Request::SetBlockFrames:
        _processor->setBlockFrames(message.frames);
        return {true, {}};
    case Request::SetOffline:
        _processor->setOffline(message.flag != 0);
        return {true, {}};
    case Request::Allocate:
        // A change of the rate can limit values whose bounds depend on the rate.
        applyValues();
        return restored(_processor->allocate(message.sampleRate, message.frames));
    case Request::Release:
        _processor->release();
        return {true, {}};
    case Request::SaveState:
        applyValues();
        return saveState();
    case Request::RestoreState:
        return restored(_processor->restoreState(request.text));
    case Request::RestorePreset:
        return restored(_processor->restorePreset(request.text));
    case Request::SendMidi:
        return {
            _processor->sendMidi(message.frames, {reinterpret_cast<const std::uint8_t*>(request.text.data()),
                                                  request.text.size()}),
            {}};
    }
    return {false, "The request is unknown."};
}

EffectServer::Answer EffectServer::make(const Message& request) {
    auto world = std::make_shared<World>(_index, _uri);
    const IndexedBundle* home = _index.bundleOf(_uri);
    if (home == nullptr || world->plugin() == nullptr) {
        return {false, "The effect " + _uri + " is not installed."};
    }
    Plugin plugin = world->describe();
    auto made = Processor::make(std::move(world), std::move(plugin), home->isOurs, request.sampleRate,
                                request.frames);
    if (!made) return {false, made.error().localizedDescription()};
    const Processor& processor = *made.value();
    if (processor.inputChannels() != _memory.inputs(0).channels() ||
        processor.outputChannels() != _memory.outputs(0).channels() ||
        processor.plugin().ports.size() != _memory.values().size()) {
        return {false, "The effect " + _uri + " was replaced by another one while it was started."};
    }
    _processor = std::move(made.value());
    _midi = std::make_unique<BlockMidi>(_memory);
    _processor->setMidiSink(_midi.get());
    _processor->useMessages(_messages);
    publishValues(PortKind::ControlInput);
    publishValues(PortKind::ControlOutput);
    std::promise<void> started;
    std::thread([this, &started] {
        static OwnedWords words(_memory.header().alive, _memory.header().turn);
        const auto thread = static_cast<std::uint32_t>(::gettid());
        _memory.header().alive.word.store(OwnedWord::ownedBy(thread));
        _memory.header().thread.store(thread);
        started.set_value();
        renderBlocks();
    }).detach();
    started.get_future().wait();
    return {true, {}};
}

EffectServer::Answer EffectServer::saveState() {
    auto text = _processor->saveState();
    if (!text) return {false, text.error().localizedDescription()};
    if (text.value().size() > Message::LongestText) return {false, "The effect's state is too large."};
    return {true, std::move(text.value())};
}

EffectServer::Answer EffectServer::restored(const std::optional<Error>& failure) {
    if (failure) return {false, failure->localizedDescription()};
    publishValues(PortKind::ControlInput);
    return {true, {}};
}

void EffectServer::applyValues() {
    if (!_memory.header().hasNewValues.exchange(false, std::memory_order_acquire)) return;
    for (const Port& port : _processor->plugin().ports) {
        if (port.kind != PortKind::ControlInput) continue;
        _processor->setValue(port.index, _memory.values()[port.index].load(std::memory_order_relaxed));
    }
}

void EffectServer::publishValues(PortKind kind) {
    for (const Port& port : _processor->plugin().ports) {
        if (port.kind != kind) continue;
        _memory.values()[port.index].store(_processor->value(port.index), std::memory_order_relaxed);
    }
}

void EffectServer::renderBlocks() {
    cpu_set_t all;
    CPU_ZERO(&all);
    ::sched_getaffinity(0, sizeof all, &all);
    Placement placement;
    BlockHeader& header = _memory.header();
    const std::uint32_t own = header.alive.word.load();
    for (std::uint32_t seen = 0;;) {
        const std::uint32_t request = header.request.load(std::memory_order_acquire);
        if (request == seen) {
            waitOn(header.request, seen);
            continue;
        }
        seen = request;
        if (const Placement wanted = header.placement.load(std::memory_order_relaxed); wanted != placement) {
            placement = wanted;
            place(placement, all);
        }
        if (header.turn.word.load(std::memory_order_acquire) != own) continue;
        renderBlock();
        header.turn.word.store(0, std::memory_order_release);
        wake(header.turn.word);
    }
}

void EffectServer::renderBlock() {
    const DenormalScope noDenormals;
    const BlockHeader& header = _memory.header();
    applyValues();
    _midi->beginBlock();
    _processor->process(_memory.inputs(header.frames), _memory.outputs(header.frames), header.sampleTime);
    _midi->endBlock();
    publishValues(PortKind::ControlOutput);
}

} // namespace platform::lv2
