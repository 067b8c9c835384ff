// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Wakes one waiting thread. `signal` is the only system call that the audio thread makes.
#pragma once

#include <chrono>
#include <semaphore.h>

namespace platform {

/// Shared between threads: the semaphore, which counts the signals.
class WakeSignal {
  public:
    WakeSignal() noexcept;
    ~WakeSignal();
    WakeSignal(const WakeSignal&) = delete;
    WakeSignal& operator=(const WakeSignal&) = delete;

    /// Lets one `wait` return, now or later. Any thread; never blocks.
    void signal() noexcept;
    /// Waits for one `signal`.
    void wait() noexcept;
    /// Waits for one `signal`, at most for `limit`, and returns whether it came.
    [[nodiscard]] bool waitFor(std::chrono::nanoseconds limit) noexcept;

  private:
    sem_t _semaphore{};
};

} // namespace platform
