// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Appends to a text without asking for room byte by byte: what is to be written asks once for the most it can
// need. Used from one thread at a time.
#pragma once

#include "platform/foundation/fatal.hpp"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace tonewright {

class TextWriter {
  public:
    /// Write behind what `text` holds; the text is complete when the writer has gone.
    explicit TextWriter(std::string& text)
        : _text(text)
        , _length(text.size()) {}
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;
    ~TextWriter() { _text.resize(_length); }

    /// Give room for `size` bytes; `advanceTo` tells how far it was used.
    [[nodiscard]] char* room(std::size_t size) {
        if (_text.size() - _length < size) grow(size);
        return _text.data() + _length;
    }
    void advanceTo(const char* end) noexcept { _length = static_cast<std::size_t>(end - _text.data()); }

    void write(std::string_view piece) {
        std::memcpy(room(piece.size()), piece.data(), piece.size());
        _length += piece.size();
    }
    void writeTabs(std::int64_t count) {
        if (count < 0) platform::fatal("Range requires lowerBound <= upperBound");
        const auto size = static_cast<std::size_t>(count);
        std::memset(room(size), '\t', size);
        _length += size;
    }
    void writeNumber(std::int64_t number) {
        advanceTo(std::to_chars(room(20), _text.data() + _text.size(), number).ptr);
    }

  private:
    void grow(std::size_t size) {
        _text.resize(std::max({_length + size, _text.size() * 2, std::size_t{256}}));
    }

    std::string& _text;
    std::size_t _length;
};

} // namespace tonewright
