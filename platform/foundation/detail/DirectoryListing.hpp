// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The names in one directory, read at once and returned one after the other in byte order. One thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace platform::detail {

class DirectoryListing {
  public:
    /// Reads the names of the open `directory`, without "." and "..", replacing those read before. Returns 0
    /// or the error number; the names read until then stay.
    int read(int directory);

    /// Advances to the next name; false after the last one.
    [[nodiscard]] bool advance() noexcept;
    [[nodiscard]] bool isAtEnd() const noexcept { return _position == _entries.size(); }
    /// Returns the current name; valid until the next `read`.
    [[nodiscard]] const char* name() const noexcept { return &_text[_entries[_position - 1].offset + 1]; }
    /// Returns its type as the directory gives it (DT_DIR, DT_UNKNOWN...).
    [[nodiscard]] unsigned char type() const noexcept {
        return static_cast<unsigned char>(_text[_entries[_position - 1].offset]);
    }
    [[nodiscard]] std::size_t count() const noexcept { return _entries.size(); }

  private:
    struct Entry {
        // The sixteen bytes after the prefix that all names share: usually enough to compare, and close in
        // memory.
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
