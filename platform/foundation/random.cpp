// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/random.hpp"

#include "platform/foundation/fatal.hpp"

#include <random>
#include <sys/random.h>

namespace platform {

void randomBytes(std::span<unsigned char> bytes) {
    while (!bytes.empty()) {
        const ssize_t count = ::getrandom(bytes.data(), bytes.size(), 0);
        if (count > 0) bytes = bytes.subspan(static_cast<std::size_t>(count));
    }
}

std::int64_t randomInteger(std::int64_t low, std::int64_t high) {
    if (low > high) fatal("Range requires lowerBound <= upperBound");
    std::random_device source;
    return std::uniform_int_distribution<std::int64_t>(low, high)(source);
}

} // namespace platform
