// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/process/futex.hpp"

#include <climits>
#include <cstddef>
#include <sys/syscall.h>
#include <time.h>
#include <unistd.h>

namespace platform::lv2 {

void waitOn(FutexWord& word, std::uint32_t value,
            std::optional<std::chrono::steady_clock::time_point> deadline) noexcept {
    timespec end{};
    if (deadline) {
        // steady_clock is CLOCK_MONOTONIC, which the call uses.
        const auto time = deadline->time_since_epoch();
        const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(time);
        end.tv_sec = seconds.count();
        end.tv_nsec = std::chrono::nanoseconds(time - seconds).count();
    }
    ::syscall(SYS_futex, &word, FUTEX_WAIT_BITSET, value, deadline ? &end : nullptr, nullptr,
              FUTEX_BITSET_MATCH_ANY);
}

void wake(FutexWord& word) noexcept {
    ::syscall(SYS_futex, &word, FUTEX_WAKE, INT_MAX, nullptr, nullptr, 0);
}

OwnedWords::OwnedWords(OwnedWord& first, OwnedWord& last) noexcept {
    static_assert(offsetof(OwnedWord, next) == 0);
    // The kernel's list links the addresses of `next` members; `next` is the first member.
    const auto entry = [](OwnedWord& word) { return reinterpret_cast<robust_list*>(&word); };
    _head.list.next = entry(first);
    first.next = entry(last);
    last.next = &_head.list;
    _head.futex_offset = static_cast<long>(offsetof(OwnedWord, word));
    ::syscall(SYS_set_robust_list, &_head, sizeof _head);
}

} // namespace platform::lv2
