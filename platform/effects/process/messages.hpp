// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The messages between the host and an effect's process, for everything that is not in their shared memory.
// The host sends one request at a time, and the process sends one answer to each. Control side. The socket
// (SOCK_SEQPACKET) preserves the boundaries and the order of messages.
#pragma once

#include <chrono>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform::lv2 {

enum class Request : std::uint32_t {
    Make,           // `sampleRate`, `frames`: for the first instance
    SetBlockFrames, // `frames`: the block length
    SetOffline,     // `flag`: whether rendering is offline
    Allocate,       // `sampleRate`, `frames`: the arguments of NodeProcessor::allocate
    Release,
    SaveState,     // the answer's `text` is the state
    RestoreState,  // `text`: the state
    RestorePreset, // `text`: the URI of the preset
    SendMidi,      // `frames`: the port; `text`: the bytes of one event
};

/// The fixed part of a message. Both programs must come from the same build, which is checked by comparing
/// the version.
struct Message {
    static constexpr std::uint32_t Version = 1;
    /// The largest size of a text, in bytes. A larger text is not sent.
    static constexpr std::uint64_t LongestText = std::uint64_t{64} << 20U;

    std::uint32_t version = Version;
    Request request = Request::Make; // in an answer: the request that it answers
    std::uint32_t number = 0;        // number of the request, repeated in its answer
    std::uint32_t frames = 0;
    double sampleRate = 0;  // frames per second
    std::uint32_t flag = 0; // in an answer: whether the request succeeded; if not, `text` is the reason
    std::uint32_t reserved = 0;
};

struct ReceivedMessage {
    Message message;
    std::string text;
};

/// Sends a message and its text, which is passed as a file in memory. Returns whether the message was sent.
/// Never waits: if the receiver does not read, so that the socket's buffer is full, the message is not sent.
[[nodiscard]] bool sendMessage(int socket, const Message& message, std::string_view text);
/// Waits for the next message, until `deadline` if it has a value. Returns no value if the deadline passes,
/// the other process has ended, or the received data is not a valid message.
[[nodiscard]] std::optional<ReceivedMessage>
receiveMessage(int socket, std::optional<std::chrono::steady_clock::time_point> deadline = std::nullopt);

} // namespace platform::lv2
