// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the host and an interface's process tell each other apart from values and events. Both ends come from
// one build. Neither waits for the other.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform::lv2 {

struct InterfacePacket {
    enum class Kind : std::uint32_t {
        // From the host.
        Show, // `number`: whether the interface is visible
        // From the process.
        Opened, // `number`: the window that the interface returned as its widget, or 0
        Failed, // `text`: the reason why it was not created
        Closed, // it has closed itself
        // From both: there are new records.
        Wake,
    };
    Kind kind = Kind::Wake;
    std::uint32_t number = 0;
    std::array<char, 512> text{}; // cut off if it is longer

    [[nodiscard]] static InterfacePacket failed(const std::string& reason) noexcept {
        InterfacePacket packet{.kind = Kind::Failed};
        reason.copy(packet.text.data(), packet.text.size());
        return packet;
    }
    /// Returns the text as one line, whatever is in it.
    [[nodiscard]] std::string line() const;
};

/// Sends a packet; false if the other side has ended or does not read.
bool sendPacket(int socket, const InterfacePacket& packet) noexcept;
/// What `receivePacket` found.
enum class Received { Packet, Nothing, End };
/// Takes the next packet, if there is one, without waiting. End: the other side has ended, or what it sent is
/// no packet.
[[nodiscard]] Received receivePacket(int socket, InterfacePacket& packet) noexcept;

} // namespace platform::lv2
