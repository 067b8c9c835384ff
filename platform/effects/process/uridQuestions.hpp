// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What an effect's process asks the host about URIDs, which must be the same in all processes because they
// occur in the messages between an effect and its interface. A question and its answer are one packet each: a
// number and a text. With the number 0 a question asks for the number of the text, otherwise for the text of
// the number; the answer is both, or 0 and no text.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace platform::lv2 {

struct UridPacket {
    static constexpr std::size_t LongestText = 2044;

    std::uint32_t urid = 0;
    char text[LongestText]; // without a null character

    /// Sets the text, which must not be longer than the longest.
    void set(std::uint32_t number, std::string_view uri) noexcept {
        urid = number;
        std::memcpy(text, uri.data(), uri.size());
        length = uri.size();
    }
    [[nodiscard]] std::string_view uri() const noexcept { return {text, length}; }
    /// Returns how many bytes are sent.
    [[nodiscard]] std::size_t bytes() const noexcept { return sizeof urid + length; }
    static constexpr std::size_t MostBytes = sizeof(std::uint32_t) + LongestText;
    /// Takes note of how many bytes were received; returns whether they are a packet.
    [[nodiscard]] bool setBytes(std::ptrdiff_t received) noexcept {
        if (received < static_cast<std::ptrdiff_t>(sizeof urid)) return false;
        length = static_cast<std::size_t>(received) - sizeof urid;
        return length <= LongestText;
    }

    std::size_t length = 0; // of the text; not sent
};

} // namespace platform::lv2
