// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Asks the host for URIDs that this process does not know yet. One question at a time, any thread.
#pragma once

#include "platform/effects/lv2/UridMap.hpp"
#include "platform/effects/process/uridQuestions.hpp"

#include <cerrno>
#include <sys/socket.h>

namespace platform::lv2 {

class UridClient final : public UridSource {
  public:
    explicit UridClient(int socket)
        : _socket(socket) {}

    [[nodiscard]] LV2_URID map(std::string_view uri) override {
        if (uri.size() > UridPacket::LongestText) return 0;
        UridPacket packet;
        packet.set(0, uri);
        return ask(packet) ? packet.urid : 0;
    }
    [[nodiscard]] std::string unmap(LV2_URID urid) override {
        UridPacket packet;
        packet.set(urid, {});
        return ask(packet) ? std::string(packet.uri()) : std::string();
    }

  private:
    // The host answers at once, or it has ended.
    bool ask(UridPacket& packet) const {
        if (::send(_socket, &packet, packet.bytes(), MSG_NOSIGNAL) < 0) return false;
        ssize_t size = 0;
        do {
            size = ::recv(_socket, &packet, UridPacket::MostBytes, 0);
        } while (size < 0 && errno == EINTR);
        return packet.setBytes(size);
    }

    const int _socket;
};

} // namespace platform::lv2
