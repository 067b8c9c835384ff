// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Appends to a string through a small buffer that stays in the cache, so that the string does not grow piece
// by piece. One thread at a time.
#pragma once

#include "platform/foundation/fatal.hpp"

#include <algorithm>
#include <array>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace tonewright {

class TextWriter {
  public:
    /// The writer appends to `text`, which is complete after the writer has been destroyed.
    explicit TextWriter(std::string& text)
        : _text(text) {}
    TextWriter(const TextWriter&) = delete;
    TextWriter& operator=(const TextWriter&) = delete;
    ~TextWriter() { flush(); }

    /// Returns room for `size` bytes, which must not exceed `MostRoom`. Call `advanceTo` with the end of the
    /// bytes written.
    [[nodiscard]] char* room(std::size_t size) {
        if (_buffer.size() - _length < size) flush();
        return _buffer.data() + _length;
    }
    void advanceTo(const char* end) noexcept { _length = static_cast<std::size_t>(end - _buffer.data()); }

    void write(std::string_view piece) {
        if (piece.size() > MostRoom) {
            flush();
            _text.append(piece);
            return;
        }
        advanceTo(std::copy(piece.begin(), piece.end(), room(piece.size())));
    }
    void writeTabs(std::int64_t count) {
        if (count < 0) platform::fatal("Range requires lowerBound <= upperBound");
        const auto size = static_cast<std::size_t>(count);
        if (size > MostRoom) {
            flush();
            _text.append(size, '\t');
            return;
        }
        char* const text = room(size);
        std::memset(text, '\t', size);
        advanceTo(text + size);
    }
    template <std::integral T>
    void writeNumber(T number) {
        constexpr std::size_t MostDigits = 20;
        char* const text = room(MostDigits);
        advanceTo(std::to_chars(text, text + MostDigits, number).ptr);
    }

    static constexpr std::size_t MostRoom = 16384;

  private:
    void flush() {
        _text.append(_buffer.data(), _length);
        _length = 0;
    }

    std::string& _text;
    std::size_t _length = 0;
    std::array<char, MostRoom> _buffer; // holds `_length` bytes
};

} // namespace tonewright
