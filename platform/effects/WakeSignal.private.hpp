// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Wakes one waiting thread. `signal` is the one system call that the audio thread makes.
// Private to platform/effects.
#pragma once

#include "platform/audio/RealtimeScope.hpp"

#include <semaphore.h>

namespace platform {

class WakeSignal {
  public:
    WakeSignal() noexcept { (void)sem_init(&_semaphore, 0, 0); }
    ~WakeSignal() { (void)sem_destroy(&_semaphore); }
    WakeSignal(const WakeSignal&) = delete;
    WakeSignal& operator=(const WakeSignal&) = delete;

    /// Lets one `wait` return, now or later. Any thread; never blocks.
    void signal() noexcept {
        const ForeignCodeScope wakes;
        (void)sem_post(&_semaphore);
    }
    /// Waits for one `signal`.
    void wait() noexcept {
        while (sem_wait(&_semaphore) != 0) {
        } // interrupted by a signal handler
    }

  private:
    sem_t _semaphore{};
};

} // namespace platform
