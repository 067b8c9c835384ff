// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Takes the framing off a chunked body (RFC 9112, 7.1) and knows whether all of it came. In constant memory,
// whatever the server sends. Used from one thread at a time. Private to platform/network.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace platform {

class ChunkedBody {
  public:
    /// Returns the content at the front of `bytes`, as far as it lies in one chunk, and moves `bytes` behind
    /// it; empty when there is none left.
    [[nodiscard]] std::span<const std::byte> next(std::span<const std::byte>& bytes) noexcept;

    /// Returns whether the body's last byte came.
    [[nodiscard]] bool isWhole() const noexcept { return _place == Place::End; }
    /// Returns whether something came that is no such framing.
    [[nodiscard]] bool isBroken() const noexcept { return _place == Place::Broken; }

  private:
    enum class Place : std::uint8_t {
        Size,           // before the first digit of a chunk's size
        SizeDigits,     // behind at least one
        Extension,      // in the rest of that line
        Content,        // of which _left bytes are still to come
        ContentEnd,     // in the line end behind it
        Trailer,        // at the beginning of a line behind the last chunk
        TrailerLineEnd, // behind a carriage return there
        TrailerLine,    // in such a line
        End,
        Broken,
    };
    [[nodiscard]] Place placeBehind(unsigned char byte) noexcept;

    Place _place = Place::Size;
    std::uint64_t _left = 0;
};

} // namespace platform
