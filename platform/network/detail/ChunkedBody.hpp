// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decodes a chunked body (RFC 9112, 7.1) and detects whether all of it has arrived. Uses constant memory
// whatever the server sends. One thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace platform {

class ChunkedBody {
  public:
    /// Returns the next piece of content in `bytes`, at most to the end of a chunk, and advances `bytes` past
    /// it. Empty when `bytes` contains no more content.
    [[nodiscard]] std::span<const std::byte> next(std::span<const std::byte>& bytes) noexcept;

    /// Returns whether the body's last byte has arrived.
    [[nodiscard]] bool isWhole() const noexcept { return _place == Place::End; }
    /// Returns whether the framing was violated.
    [[nodiscard]] bool isBroken() const noexcept { return _place == Place::Broken; }

  private:
    enum class Place : std::uint8_t {
        Size,           // before the first digit of a chunk's size
        SizeDigits,     // after at least one digit
        Extension,      // in the remainder of the size line
        Content,        // in a chunk's content, of which _left bytes are still to come
        ContentEnd,     // in the line end after a chunk's content
        Trailer,        // at the start of a trailer line, after the last chunk
        TrailerLineEnd, // after a carriage return at the start of a trailer line
        TrailerLine,    // in a trailer line
        End,
        Broken,
    };
    [[nodiscard]] Place placeBehind(unsigned char byte) noexcept;

    Place _place = Place::Size;
    std::uint64_t _left = 0;
};

} // namespace platform
