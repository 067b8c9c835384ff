// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Removes the framing of a chunked body (RFC 9112, 7.1) and knows whether all of it has arrived. In constant
// memory, whatever the server sends. Used from one thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace platform {

class ChunkedBody {
  public:
    /// Returns the content at the front of `bytes`, as far as it is in one chunk, and advances `bytes` past
    /// it; empty when there is none left.
    [[nodiscard]] std::span<const std::byte> next(std::span<const std::byte>& bytes) noexcept;

    /// Returns whether the body's last byte has arrived.
    [[nodiscard]] bool isWhole() const noexcept { return _place == Place::End; }
    /// Returns whether the framing was violated.
    [[nodiscard]] bool isBroken() const noexcept { return _place == Place::Broken; }

  private:
    enum class Place : std::uint8_t {
        Size,           // before the first digit of a chunk's size
        SizeDigits,     // after at least one
        Extension,      // in the rest of that line
        Content,        // _left bytes of it are still to come
        ContentEnd,     // in the line end after it
        Trailer,        // at the start of a line after the last chunk
        TrailerLineEnd, // after a carriage return there
        TrailerLine,    // in such a line
        End,
        Broken,
    };
    [[nodiscard]] Place placeBehind(unsigned char byte) noexcept;

    Place _place = Place::Size;
    std::uint64_t _left = 0;
};

} // namespace platform
