// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/outside/OutsideInterface.hpp"

#include "platform/effects/lv2/eventQueues.hpp"
#include "platform/effects/outside/ChildProcess.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <condition_variable>
#include <cstring>
#include <limits>
#include <lv2/atom/atom.h>
#include <mutex>
#include <poll.h>
#include <sys/socket.h>
#include <thread>

namespace platform::lv2 {
namespace {

constexpr auto LookInterval = std::chrono::milliseconds(250);
constexpr int LooksUntilReport = 4, LooksUntilEnd = 20;
constexpr int CleanupMilliseconds = 1000;
// Of one update, so that an interface that sends without end does not keep the main thread.
constexpr int MostRecords = 1000, MostPackets = 16;
constexpr std::size_t ToHostBytes = std::size_t{1} << 17U;

template <class T>
std::span<const std::byte> bytesOf(const T& value) {
    return std::as_bytes(std::span(&value, 1));
}

} // namespace

// The process and what its watcher needs. The watcher makes no X call, because the interface may have stopped
// the X server; it counts its own looks instead of reading a clock, so that a machine that slept is not taken
// for a process that hung.
struct OutsideInterface::Watched {
    Watched(MessageMemory memory, std::unique_ptr<ChildProcess> process, std::string name)
        : messages(std::move(memory))
        , child(std::move(process))
        , subject(std::move(name)) {}

    const MessageMemory messages;
    const std::unique_ptr<ChildProcess> child;
    const std::string subject;
    std::atomic<std::uint32_t> updates{0}; // of the window; by the main thread
    std::atomic<bool> hasHung{false};      // set before the process is ended for it

    std::mutex mutex;
    std::condition_variable changed;
    bool isOver = false; // guarded by the mutex

    void watch() {
        struct Counter {
            const std::atomic<std::uint32_t>& count;
            std::uint32_t last = 0;
            int unchanged = 0; // looks
            int look() {
                const std::uint32_t now = count.load(std::memory_order_relaxed);
                unchanged = now == std::exchange(last, now) ? unchanged + 1 : 0;
                return unchanged;
            }
        };
        Counter beats{messages.header().beats}, ours{updates};
        std::unique_lock lock(mutex);
        while (!changed.wait_for(lock, LookInterval, [this] { return isOver; })) {
            const int silence = beats.look(), stop = ours.look();
            if (silence == LooksUntilReport && beats.last != 0) warn(subject + " does not answer.");
            // A window that does not update waits for the X server, which an interface can stop.
            if (silence < LooksUntilEnd && stop < LooksUntilEnd) continue;
            hasHung = true;
            child->kill();
            changed.wait(lock, [this] { return isOver; });
        }
        lock.unlock();
        // The socket is closed, so that the interface cleans up and its process ends.
        pollfd end{child->descriptor(), POLLIN, 0};
        ::poll(&end, 1, CleanupMilliseconds);
        child->kill();
    }
};

OutsideInterface::OutsideInterface(std::shared_ptr<AudioUnit> unit, const Interface& interface,
                                   InterfacePlace place)
    : _unit(std::move(unit))
    , _place(std::move(place))
    , _kind(interface.kind)
    , _name("The interface " + interface.uri)
    , _told(_unit->lv2Processor().plugin().ports.size(), std::numeric_limits<float>::quiet_NaN()) {}

Result<std::unique_ptr<EffectInterface>> OutsideInterface::start(std::shared_ptr<AudioUnit> unit,
                                                                 const Interface& interface,
                                                                 InterfacePlace place,
                                                                 const std::string& display) {
    std::unique_ptr<OutsideInterface> made(
        new OutsideInterface(std::move(unit), interface, std::move(place)));
    if (auto failure = made->startProcess(interface, display)) return *failure;
    return std::unique_ptr<EffectInterface>(std::move(made));
}

std::optional<Error> OutsideInterface::startProcess(const Interface& interface, const std::string& display) {
    const EffectProcessor& processor = _unit->lv2Processor();
    const Plugin& plugin = processor.plugin();
    auto messages = MessageMemory::create(ToPluginBytes + toInterfaceBytes(plugin.ports), ToHostBytes);
    if (!messages) return messages.error();
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) {
        return Error("LV2", 5, "There is no connection to the interface " + interface.uri + ".");
    }
    _socket = Descriptor(ends[0]);
    const Descriptor theirs(ends[1]), urids = _urids->connect();
    _toProcess = messages.value().toProcess();
    _toHost = messages.value().toHost();
    tellValues(); // the interface is created with them
    auto child =
        ChildProcess::start(plugin.name,
                            {"--interface", std::to_string(static_cast<int>(interface.kind)), plugin.uri,
                             interface.uri, std::to_string(_place.window), std::to_string(_place.scale),
                             std::to_string(processor.sampleRate()), display},
                            {theirs.get(), urids.get(), messages.value().descriptor()});
    if (!child) return child.error();
    _watched = std::make_shared<Watched>(std::move(messages.value()), std::move(child.value()), _name);
    std::thread([watched = _watched] { watched->watch(); }).detach();
    return std::nullopt;
}

OutsideInterface::~OutsideInterface() {
    if (_state == State::Open || _state == State::Closed) _unit->lv2Processor().setListening(false);
    _unit->runOnSilence(false);
    _unit->releaseInterface();
    _socket.close();
    if (!_watched) return;
    {
        const std::scoped_lock lock(_watched->mutex);
        _watched->isOver = true;
    }
    _watched->changed.notify_one();
}

void OutsideInterface::setVisible(bool isVisible) {
    _unit->runOnSilence(isVisible);
    (void)sendPacket(_socket.get(),
                     {.kind = InterfacePacket::Kind::Show, .number = isVisible ? 1U : 0U, .text = {}});
}

EffectInterface::State OutsideInterface::update() {
    _watched->updates.fetch_add(1, std::memory_order_relaxed);
    takePackets();
    if (_state != State::Open) return _state;
    takeRecords();
    tellValues();
    passEvents();
    if (std::exchange(_hasNewRecords, false)) (void)sendPacket(_socket.get(), {});
    return _state;
}

void OutsideInterface::takePackets() {
    for (int i = 0; i < MostPackets && (_state == State::Opening || _state == State::Open); ++i) {
        InterfacePacket packet;
        switch (receivePacket(_socket.get(), packet)) {
        case Received::Packet:
            takePacket(packet);
            break;
        case Received::Nothing:
            return;
        case Received::End:
            handleEnd();
        }
    }
}

void OutsideInterface::takePacket(const InterfacePacket& packet) {
    switch (packet.kind) {
    case InterfacePacket::Kind::Opened:
        if (_state != State::Opening) return;
        _namedWindow = packet.number;
        _state = State::Open;
        _unit->lv2Processor().setListening(true);
        return;
    case InterfacePacket::Kind::Failed:
        if (_state != State::Opening) return;
        warn(packet.line());
        _state = State::Failed;
        return;
    case InterfacePacket::Kind::Closed:
        if (_kind != Interface::Kind::External) warn(_name + " has closed itself.");
        _state = State::Closed;
        return;
    case InterfacePacket::Kind::Show:
    case InterfacePacket::Kind::Wake:
        return; // the records are looked at anyway
    }
}

void OutsideInterface::handleEnd() {
    ChildProcess& child = *_watched->child;
    child.kill(); // in case it has only closed the socket
    const std::string reason = child.reasonOfEnd();
    if (_state == State::Open) _unit->lv2Processor().setListening(false);
    if (_watched->hasHung) {
        warn(_name + " did not answer for five seconds and was ended.");
        _state = State::Hung;
    } else {
        warn(_name + " has ended (" + reason + ").");
        _state = _state == State::Opening ? State::Failed : State::Ended;
    }
}

void OutsideInterface::takeRecords() {
    const auto& ports = _unit->lv2Processor().plugin().ports;
    for (int i = 0; i < MostRecords && _toHost->hasRecord(); ++i, _toHost->drop()) {
        InterfaceRecord record;
        if (_toHost->recordSize() < sizeof record) continue;
        _toHost->peek(std::as_writable_bytes(std::span(&record, 1)));
        if (record.kind == InterfaceRecord::Kind::Size) {
            const auto side = [](std::uint32_t length) {
                return static_cast<int>(std::clamp<std::uint32_t>(length, 1, InterfacePlace::LongestSide));
            };
            if (_place.takeSize) _place.takeSize(side(record.port), side(record.taken));
            continue;
        }
        if (record.kind == InterfaceRecord::Kind::Value) ++_taken;
        if (record.port >= ports.size()) continue;
        const PortKind kind = ports[record.port].kind;
        if (record.kind == InterfaceRecord::Kind::Value && kind == PortKind::ControlInput &&
            std::isfinite(record.value)) {
            _told[record.port] = record.value; // not reported back, unless it is limited
            _unit->setParameterValue(record.port, record.value);
        } else if (record.kind == InterfaceRecord::Kind::Atom && kind == PortKind::AtomInput) {
            takeAtom(record.port);
        }
    }
}

void OutsideInterface::takeAtom(std::uint32_t port) {
    LV2_Atom head{};
    _atom.resize(_toHost->recordSize() - sizeof(InterfaceRecord));
    _toHost->peek(sizeof(InterfaceRecord), _atom);
    if (_atom.size() < sizeof head) return;
    std::memcpy(&head, _atom.data(), sizeof head);
    if (head.size != _atom.size() - sizeof head) return;
    if (!_unit->lv2Processor().sendAtom(port, _atom)) {
        warn("A message of the interface of \"" + _unit->lv2Processor().plugin().name +
             "\" did not fit into the queue and was lost.");
    }
}

void OutsideInterface::tellValues() {
    for (const Port& port : _unit->lv2Processor().plugin().ports) {
        if (port.kind != PortKind::ControlInput && port.kind != PortKind::ControlOutput) continue;
        const float value = _unit->parameterValue(port.index);
        if (value == _told[port.index] || std::isnan(value)) continue;
        const InterfaceRecord record{
            .kind = InterfaceRecord::Kind::Value, .port = port.index, .taken = _taken, .value = value};
        if (!_toProcess->write(bytesOf(record))) return; // next time
        _told[port.index] = value;
        _hasNewRecords = true;
    }
}

void OutsideInterface::passEvents() {
    std::uint32_t port = 0;
    for (int i = 0; i < MostRecords && _unit->lv2Processor().receiveAtom(port, _atom); ++i) {
        const InterfaceRecord record{
            .kind = InterfaceRecord::Kind::Atom, .port = port, .taken = 0, .value = 0};
        // An interface that does not keep up loses events.
        if (_toProcess->write(bytesOf(record), _atom)) _hasNewRecords = true;
    }
}

} // namespace platform::lv2
