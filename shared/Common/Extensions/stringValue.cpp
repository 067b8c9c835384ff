// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Extensions/stringValue.hpp"

#include "platform/foundation/MacRoman.hpp"

#include <array>

namespace tonewright {

std::string stringValue(std::uint32_t code) {
    const auto byteAt = [code](unsigned shift) {
        return static_cast<unsigned char>((code >> shift) & 0xFFU);
    };
    const std::array<unsigned char, 4> bytes = {byteAt(24), byteAt(16), byteAt(8), byteAt(0)};
    return platform::decodeMacRoman(bytes).value_or("FAIL"); // never fails: every byte has a character
}

} // namespace tonewright
