// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A text of 24 bytes: up to 23 bytes of it inside, longer ones on the heap. File names are mostly short, and
// a tree holds millions of them. A value; any thread.
#pragma once

#include <array>
#include <string_view>

namespace tonewright {

class CompactText {
  public:
    /// Makes the empty text.
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

    // Inside: the bytes, and their number in the last one. On the heap: the address, the length, and the
    // mark.
    alignas(8) std::array<char, 24> _bytes{};
};

} // namespace tonewright
