// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Futexes in memory shared by the host and an effect's process, with which a thread of one process waits for
// the other process. Source: futex(2) and the kernel's documentation of robust futexes.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <linux/futex.h>
#include <optional>

namespace platform::lv2 {

using FutexWord = std::atomic<std::uint32_t>;
static_assert(sizeof(FutexWord) == 4 && FutexWord::is_always_lock_free);

/// Waits while `word` contains `value`, until another thread wakes this one, a signal arrives or `deadline`
/// passes. The caller must check the word again. Makes one system call.
void waitOn(FutexWord& word, std::uint32_t value,
            std::optional<std::chrono::steady_clock::time_point> deadline = std::nullopt) noexcept;
/// Wakes all threads of both processes that wait for `word`. Makes one system call, which does not block.
void wake(FutexWord& word) noexcept;

/// A word that a thread of an effect's process can own. If the thread ends for any reason while it owns the
/// word, the kernel marks the word as abandoned and wakes the host.
struct OwnedWord {
    robust_list* next = nullptr; // an address in the process that registered the word
    FutexWord word{0};           // 0 if the word has no owner

    /// Returns the value of a word that `thread` owns.
    [[nodiscard]] static constexpr std::uint32_t ownedBy(std::uint32_t thread) noexcept {
        return thread | FUTEX_WAITERS; // the host may be waiting
    }
    [[nodiscard]] static constexpr bool isAbandoned(std::uint32_t value) noexcept {
        return (value & FUTEX_OWNER_DIED) != 0;
    }
};

/// Registers with the kernel the words that the calling thread may own. When the thread ends, the kernel
/// checks `first` first. Replaces the C library's list, so robust mutexes that the thread holds are not
/// recovered when it ends. This object and the words must outlive the thread.
class OwnedWords {
  public:
    OwnedWords(OwnedWord& first, OwnedWord& last) noexcept;
    OwnedWords(const OwnedWords&) = delete;
    OwnedWords& operator=(const OwnedWords&) = delete;

  private:
    robust_list_head _head{};
};

} // namespace platform::lv2
