// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Formats sizes for people, with units that are powers of 1000. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

enum class ByteCountStyle { File };

/// The size in bytes of the longest text that `writeByteCount` writes.
inline constexpr std::size_t ByteCountLength = 32;

class ByteCountFormatter {
  public:
    /// Returns the text of `byteCount`: "Zero KB", "1 byte", "999 bytes", "12 KB", "1.2 MB", "4.75 GB". The
    /// unit is chosen before rounding; halves round to even; trailing zeros are dropped.
    [[nodiscard]] static std::string stringFromByteCount(std::int64_t byteCount, ByteCountStyle countStyle);
    /// Writes the text of `byteCount` to `text`, which must have room for `ByteCountLength` bytes. Returns
    /// the end of the written text.
    static char* writeByteCount(char* text, std::int64_t byteCount);
};

} // namespace platform
