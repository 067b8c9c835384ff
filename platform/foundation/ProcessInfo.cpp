// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/ProcessInfo.hpp"

#include "platform/foundation/random.hpp"

#include <array>
#include <errno.h> // program_invocation_short_name
#include <unistd.h>

namespace platform {

const ProcessInfo& ProcessInfo::processInfo() {
    static const ProcessInfo info;
    return info;
}

std::string ProcessInfo::processName() const {
    return program_invocation_short_name;
}

std::int32_t ProcessInfo::processIdentifier() const noexcept {
    return ::getpid();
}

std::string ProcessInfo::globallyUniqueString() const {
    std::array<unsigned char, 16> bytes{};
    randomBytes(bytes);
    bytes[6] = static_cast<unsigned char>((bytes[6] & 0x0FU) | 0x40U);
    bytes[8] = static_cast<unsigned char>((bytes[8] & 0x3FU) | 0x80U);
    std::string text;
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        if (i == 4 || i == 6 || i == 8 || i == 10) text += '-';
        text += "0123456789ABCDEF"[bytes[i] >> 4U];
        text += "0123456789ABCDEF"[bytes[i] & 15U];
    }
    return text;
}

} // namespace platform
