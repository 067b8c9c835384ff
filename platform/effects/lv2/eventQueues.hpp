// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The queues of events between a plug-in and its interface: their sizes, and what precedes an event in them.
// Both processes of an effect use them. Any thread.
#pragma once

#include "platform/effects/lv2/Plugin.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace platform::lv2 {

/// Precedes an event in a queue for an interface; the event's atom follows.
struct EventHead {
    std::uint32_t port;
    std::uint32_t listener; // the interface for which the event was kept
};

/// The size of the smallest port buffer for events, in bytes.
inline constexpr std::uint32_t LeastSequence = 16384;
/// The size of the queue for events from the interface, in bytes.
inline constexpr std::size_t ToPluginBytes = std::size_t{1} << 16U;

/// Returns the size of the buffer of an atom port in bytes, a multiple of 8.
[[nodiscard]] inline std::uint32_t sequenceBytesOf(const Port& port) {
    return (std::max(port.minimumSize, LeastSequence) + 7U) & ~7U;
}

/// Returns the size, in bytes, of a queue that takes a few blocks of events for an interface.
[[nodiscard]] inline std::size_t toInterfaceBytes(const std::vector<Port>& ports) {
    constexpr std::size_t Largest = std::size_t{4} << 20U;
    std::size_t bytes = 0;
    for (const Port& port : ports) {
        if (port.kind == PortKind::AtomOutput) bytes += sequenceBytesOf(port);
    }
    return std::min(bytes * 4, Largest);
}

} // namespace platform::lv2
