// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/FileBase.hpp"

#include "platform/foundation/fatal.hpp"

#include <atomic>
#include <limits>

namespace tonewright {
namespace {

std::atomic<std::int64_t> count{0};

} // namespace

FileBase::FileBase() {
    const std::int64_t before = count.fetch_add(1, std::memory_order_relaxed);
    if (before == std::numeric_limits<std::int64_t>::max()) {
        platform::fatal("Arithmetic overflow in an addition");
    }
    _id = before + 1;
}

std::int64_t FileBase::lastID() noexcept {
    return count.load(std::memory_order_relaxed);
}

} // namespace tonewright
