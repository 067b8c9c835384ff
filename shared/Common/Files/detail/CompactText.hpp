// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A string in 24 bytes. Up to 23 characters are stored inside the object, longer strings on the heap. It is
// meant for file names, which are mostly short and of which a tree may have millions. Any thread.
#pragma once

#include <array>
#include <string_view>

namespace tonewright {

class CompactText {
  public:
    /// Creates an empty string.
    CompactText() noexcept = default;
    explicit CompactText(std::string_view text);
    CompactText(CompactText&& other) noexcept;
    CompactText& operator=(CompactText&& other) noexcept;
    ~CompactText();

    [[nodiscard]] std::string_view view() const noexcept;

  private:
    static constexpr std::size_t MostInside = 23;
    static constexpr unsigned char Outside = 0xFF;
    [[nodiscard]] bool isOutside() const noexcept;

    // Either the characters, and their number in the last byte; or the address on the heap, the length, and
    // `Outside` in the last byte.
    alignas(8) std::array<char, 24> _bytes{};
};

} // namespace tonewright
