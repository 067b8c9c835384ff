// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/outside/UridService.hpp"

#include "platform/effects/lv2/UridMap.hpp"
#include "platform/effects/process/uridQuestions.hpp"

#include <array>
#include <poll.h>
#include <sys/eventfd.h>
#include <sys/socket.h>
#include <unistd.h>

namespace platform::lv2 {
namespace {

// The URIs that processes may add: more than all effects of a large installation use, and at most 128 MiB.
constexpr std::size_t MostUris = 65536;

// Reads one question and answers it. False if the process has ended or does not read its answers.
bool serve(int socket) {
    UridPacket packet;
    const ssize_t size = ::recv(socket, &packet, UridPacket::MostBytes, MSG_DONTWAIT);
    if (size == 0 || !packet.setBytes(size)) return false;
    UridMap& map = UridMap::shared();
    if (packet.urid == 0) {
        packet.urid = map.mapWithin(MostUris, packet.uri());
    } else {
        const char* uri = map.unmap(packet.urid);
        const std::string_view text(uri == nullptr ? "" : uri);
        packet.set(packet.urid, text.substr(0, UridPacket::LongestText));
    }
    return ::send(socket, &packet, packet.bytes(), MSG_NOSIGNAL | MSG_DONTWAIT) >= 0;
}

} // namespace

std::shared_ptr<UridService> UridService::shared() {
    static std::mutex mutex;
    static std::weak_ptr<UridService> known;
    const std::scoped_lock lock(mutex);
    auto service = known.lock();
    if (!service) known = service = std::make_shared<UridService>();
    return service;
}

UridService::UridService()
    : _news(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK))
    , _thread([this] { run(); }) {
    (void)Urids::shared(); // the host's own URIDs, whatever the processes ask for
}

UridService::~UridService() {
    _isEnding = true;
    const std::uint64_t one = 1;
    (void)!::write(_news.get(), &one, sizeof one);
    _thread.join();
}

Descriptor UridService::connect() {
    std::array<int, 2> ends{};
    if (::socketpair(AF_UNIX, SOCK_SEQPACKET | SOCK_CLOEXEC, 0, ends.data()) != 0) return {};
    {
        const std::scoped_lock lock(_mutex);
        _arrived.emplace_back(ends[0]);
    }
    const std::uint64_t one = 1;
    (void)!::write(_news.get(), &one, sizeof one);
    return Descriptor(ends[1]);
}

void UridService::run() {
    std::vector<Descriptor> sockets;
    while (!_isEnding) {
        std::vector<pollfd> events{{_news.get(), POLLIN, 0}};
        for (const Descriptor& socket : sockets) events.push_back({socket.get(), POLLIN, 0});
        if (::poll(events.data(), events.size(), -1) < 0) continue;
        std::vector<Descriptor> kept;
        for (std::size_t i = 0; i < sockets.size();
             ++i) { // one question of each, so that all have their turn
            if (events[i + 1].revents == 0 || serve(sockets[i].get())) kept.push_back(std::move(sockets[i]));
        }
        sockets = std::move(kept);
        std::uint64_t count = 0;
        (void)!::read(_news.get(), &count, sizeof count);
        const std::scoped_lock lock(_mutex);
        for (Descriptor& socket : _arrived) sockets.push_back(std::move(socket));
        _arrived.clear();
    }
}

} // namespace platform::lv2
