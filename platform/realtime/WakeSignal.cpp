// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/realtime/WakeSignal.hpp"

#include "platform/realtime/RealtimeScope.hpp"

#include <algorithm>
#include <cerrno>
#include <ctime>

namespace platform {

WakeSignal::WakeSignal() noexcept {
    (void)sem_init(&_semaphore, 0, 0);
}

WakeSignal::~WakeSignal() {
    (void)sem_destroy(&_semaphore);
}

void WakeSignal::signal() noexcept {
    const ForeignCodeScope wakes;
    (void)sem_post(&_semaphore);
}

void WakeSignal::wait() noexcept {
    while (sem_wait(&_semaphore) != 0) {
    } // interrupted by a signal handler
}

bool WakeSignal::waitFor(std::chrono::nanoseconds limit) noexcept {
    using namespace std::chrono;
    // steady_clock is CLOCK_MONOTONIC. The limit of 24 hours avoids an overflow.
    const nanoseconds end =
        steady_clock::now().time_since_epoch() + std::clamp<nanoseconds>(limit, 0ns, hours(24));
    const auto whole = duration_cast<seconds>(end);
    const timespec until{.tv_sec = whole.count(), .tv_nsec = (end - whole).count()};
    while (sem_clockwait(&_semaphore, CLOCK_MONOTONIC, &until) != 0) {
        if (errno != EINTR) return false;
    }
    return true;
}

} // namespace platform
