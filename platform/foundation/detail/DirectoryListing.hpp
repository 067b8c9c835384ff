// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The names in a directory. They are read all at once and returned one by one in byte order. One thread.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace platform::detail {

class DirectoryListing {
  public:
    /// Replaces the names by those in the open directory `directory`, except "." and "..". Returns 0 or the
    /// error number. After an error, the names read so far are available.
    int read(int directory);

    /// Advances to the next name. Returns false after the last name.
    [[nodiscard]] bool advance() noexcept;
    [[nodiscard]] bool isAtEnd() const noexcept { return _position == _entries.size(); }
    /// Returns the current name, which is valid until the next `read`.
    [[nodiscard]] const char* name() const noexcept { return &_text[_entries[_position - 1].offset + 1]; }
    /// Returns the type of the current item as the directory records it (DT_DIR, DT_UNKNOWN...).
    [[nodiscard]] unsigned char type() const noexcept {
        return static_cast<unsigned char>(_text[_entries[_position - 1].offset]);
    }
    [[nodiscard]] std::size_t count() const noexcept { return _entries.size(); }

  private:
    struct Entry {
        // The sixteen bytes after the prefix that all names share. Usually they are enough to compare two
        // names, and they are close together in memory.
        std::uint64_t key = 0;
        std::uint64_t secondKey = 0;
        std::size_t offset = 0;
    };
    void sort();

    std::vector<char> _text; // for each name: the type, the name, NUL
    std::vector<Entry> _entries;
    std::size_t _position = 0;
};

} // namespace platform::detail
