// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The names in one directory, read at once and given one after the other in byte order.
// One thread. Private to platform/foundation.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace platform::detail {

class DirectoryListing {
  public:
    /// Reads the names of the open `directory`, without "." and "..", in place of those read before. Gives 0
    /// or the error number; the names read until then stay.
    int read(int directory);

    /// Stand on the next name; false after the last one.
    [[nodiscard]] bool advance() noexcept;
    [[nodiscard]] bool isAtEnd() const noexcept { return _position == _entries.size(); }
    /// Returns the name stood on; valid until the next `read`.
    [[nodiscard]] const char* name() const noexcept { return &_text[_entries[_position - 1].offset + 1]; }
    /// Gives its type as a directory tells it (DT_DIR, DT_UNKNOWN...).
    [[nodiscard]] unsigned char type() const noexcept {
        return static_cast<unsigned char>(_text[_entries[_position - 1].offset]);
    }
    [[nodiscard]] std::size_t count() const noexcept { return _entries.size(); }

  private:
    struct Entry {
        // The sixteen bytes behind what all names have in common: mostly enough to compare, and near.
        std::uint64_t key = 0;
        std::uint64_t secondKey = 0;
        std::size_t offset = 0;
    };
    void sort();

    std::vector<char> _text; // per name: its type, its bytes, NUL
    std::vector<Entry> _entries;
    std::size_t _position = 0;
};

} // namespace platform::detail
