// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/child/InterfaceServer.hpp"

#include "platform/effects/lv2/World.hpp"

#include <algorithm>
#include <cmath>
#include <utility>

namespace platform::lv2 {
namespace {

constexpr auto VisibleInterval = std::chrono::milliseconds(33);
constexpr auto HiddenInterval = std::chrono::milliseconds(500);

template <class T>
std::span<const std::byte> bytesOf(const T& value) {
    return std::as_bytes(std::span(&value, 1));
}

} // namespace

InterfaceServer::InterfaceServer(int socket, MessageMemory messages, const BundleIndex& index,
                                 InterfaceToolkit& toolkit, Subject subject)
    : _socket(socket)
    , _messages(std::move(messages))
    , _index(index)
    , _toolkit(toolkit)
    , _fromHost(_messages.toProcess())
    , _toHost(_messages.toHost())
    , _subject(std::move(subject)) {}

void InterfaceServer::run() {
    auto made = create();
    if (!made) {
        (void)sendPacket(_socket, InterfacePacket::failed(made.error().localizedDescription()));
        return;
    }
    _host = std::move(made.value());
    const unsigned long window = _isEmbedded ? _toolkit.embed(_host->widget(), _subject.window) : 0;
    (void)sendPacket(
        _socket,
        {.kind = InterfacePacket::Kind::Opened, .number = static_cast<std::uint32_t>(window), .text = {}});
    _toolkit.run(_socket, [this] { return serve(); });
}

// Returns no value if the host has closed the socket.
std::optional<std::chrono::milliseconds> InterfaceServer::serve() {
    if (!takePackets()) return std::nullopt;
    if (_next <= Clock::now()) update();
    return std::max(std::chrono::ceil<std::chrono::milliseconds>(_next - Clock::now()),
                    std::chrono::milliseconds(0));
}

Result<std::unique_ptr<InterfaceHost>> InterfaceServer::create() {
    World world(_index, _subject.effect);
    if (world.plugin() == nullptr) {
        return Error("LV2", 4, "The effect " + _subject.effect + " is not installed.");
    }
    _plugin = world.describe();
    _values.resize(_plugin.ports.size());
    const std::vector<Interface> interfaces = world.interfaces();
    const auto interface = std::ranges::find(interfaces, _subject.interface, &Interface::uri);
    if (interface == interfaces.end()) {
        return Error("LV2", 4, "The interface " + _subject.interface + " is not installed.");
    }
    _isEmbedded = interface->kind != Interface::Kind::External;
    std::uint32_t port = 0;
    std::vector<std::byte> atom;
    while (takeRecord(port, atom)) {
    }
    const auto takeSize = [this](int width, int height) {
        const InterfaceRecord record{.kind = InterfaceRecord::Kind::Size,
                                     .port = static_cast<std::uint32_t>(width),
                                     .taken = static_cast<std::uint32_t>(height),
                                     .value = 0};
        _hasNewRecords = _toHost.write(bytesOf(record)) || _hasNewRecords;
    };
    return InterfaceHost::make(*this, *interface, {_subject.window, _subject.scale, takeSize});
}

// False if the host has closed the socket.
bool InterfaceServer::takePackets() {
    InterfacePacket packet;
    Received received = Received::Nothing;
    while ((received = receivePacket(_socket, packet)) == Received::Packet) {
        if (packet.kind == InterfacePacket::Kind::Show) {
            _isVisible = packet.number != 0;
            if (_isVisible) _host->show();
        }
        _next = {}; // there is news
    }
    return received != Received::End;
}

void InterfaceServer::update() {
    _next = Clock::now() + (_isVisible ? VisibleInterval : HiddenInterval);
    _messages.header().beats.fetch_add(1, std::memory_order_relaxed);
    for (std::uint32_t port = 0; port < _values.size(); ++port) {
        if (_values[port].isUnsent) setValue(port, _values[port].value);
    }
    if (!std::exchange(_isUpdating, true)) {
        _host->update();
        _isUpdating = false;
    }
    if (std::exchange(_hasNewRecords, false)) (void)sendPacket(_socket, {});
    if (!_host->hasClosed() || std::exchange(_hasSaidClosed, true)) return;
    (void)sendPacket(_socket, {.kind = InterfacePacket::Kind::Closed, .number = 0, .text = {}});
}

void InterfaceServer::setValue(std::uint32_t port, float value) {
    const InterfaceRecord record{
        .kind = InterfaceRecord::Kind::Value, .port = port, .taken = 0, .value = value};
    _values[port].value = value;
    _values[port].isUnsent = !_toHost.write(bytesOf(record));
    if (_values[port].isUnsent) return;
    _values[port].number = ++_sent;
    _hasNewRecords = true;
}

bool InterfaceServer::sendAtom(std::uint32_t port, std::span<const std::byte> atom) {
    const InterfaceRecord record{.kind = InterfaceRecord::Kind::Atom, .port = port, .taken = 0, .value = 0};
    if (!_toHost.write(bytesOf(record), atom)) return false;
    _hasNewRecords = true;
    return true;
}

bool InterfaceServer::receiveAtom(std::uint32_t& port, std::vector<std::byte>& atom) {
    while (takeRecord(port, atom)) {
        if (!atom.empty()) return true;
    }
    return false;
}

// Takes the next record; the atom is empty if it was a value.
bool InterfaceServer::takeRecord(std::uint32_t& port, std::vector<std::byte>& atom) {
    if (!_fromHost.hasRecord()) return false;
    InterfaceRecord record;
    _fromHost.peek(std::as_writable_bytes(std::span(&record, 1)));
    atom.resize(_fromHost.recordSize() - sizeof record);
    _fromHost.peek(sizeof record, atom);
    _fromHost.drop();
    port = record.port;
    if (record.kind != InterfaceRecord::Kind::Value) return true;
    // A value from before the interface's own last one is out of date.
    Value& known = _values[record.port];
    const bool isNewer = static_cast<std::int32_t>(record.taken - known.number) >= 0 && !known.isUnsent;
    if (isNewer) known.value = record.value;
    return true;
}

} // namespace platform::lv2
