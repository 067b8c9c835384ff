// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/detail/CompactText.hpp"

#include "platform/foundation/fatal.hpp"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <limits>
#include <utility>

namespace tonewright {

CompactText::CompactText(std::string_view text) {
    if (text.size() <= MostInside) {
        std::copy(text.begin(), text.end(), _bytes.begin());
        _bytes[MostInside] = static_cast<char>(text.size());
        return;
    }
    if (text.size() > std::numeric_limits<std::uint32_t>::max()) platform::fatal("A path is too long");
    char* outside = new char[text.size()];
    std::memcpy(outside, text.data(), text.size());
    const auto length = static_cast<std::uint32_t>(text.size());
    std::memcpy(_bytes.data(), &outside, sizeof outside);
    std::memcpy(_bytes.data() + 8, &length, sizeof length);
    _bytes[MostInside] = static_cast<char>(Outside);
}

CompactText::CompactText(CompactText&& other) noexcept
    : _bytes(std::exchange(other._bytes, {})) {}

CompactText& CompactText::operator=(CompactText&& other) noexcept {
    std::swap(_bytes, other._bytes);
    return *this;
}

CompactText::~CompactText() {
    if (isOutside()) delete[] view().data();
}

bool CompactText::isOutside() const noexcept {
    return static_cast<unsigned char>(_bytes[MostInside]) == Outside;
}

std::string_view CompactText::view() const noexcept {
    if (!isOutside()) return {_bytes.data(), static_cast<std::size_t>(_bytes[MostInside])};
    const char* outside = nullptr;
    std::uint32_t length = 0;
    std::memcpy(&outside, _bytes.data(), sizeof outside);
    std::memcpy(&length, _bytes.data() + 8, sizeof length);
    return {outside, length};
}

} // namespace tonewright
