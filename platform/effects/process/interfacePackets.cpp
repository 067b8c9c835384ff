// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/process/interfacePackets.hpp"

#include <algorithm>
#include <cerrno>
#include <sys/socket.h>

namespace platform::lv2 {

std::string InterfacePacket::line() const {
    std::string line(text.begin(), std::ranges::find(text, '\0'));
    std::ranges::replace_if(
        line, [](char letter) { return (letter & 0x60) == 0 || letter == 0x7f; }, ' ');
    return line;
}

bool sendPacket(int socket, const InterfacePacket& packet) noexcept {
    return ::send(socket, &packet, sizeof packet, MSG_NOSIGNAL | MSG_DONTWAIT) ==
           static_cast<ssize_t>(sizeof packet);
}

Received receivePacket(int socket, InterfacePacket& packet) noexcept {
    const ssize_t size = ::recv(socket, &packet, sizeof packet, MSG_DONTWAIT);
    if (size < 0 && (errno == EAGAIN || errno == EINTR)) return Received::Nothing;
    return size == static_cast<ssize_t>(sizeof packet) ? Received::Packet : Received::End;
}

} // namespace platform::lv2
