// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The limit: a loop that does nothing but read the kernel's own periodic timer. Nothing can be left out of
// it, so that what it loses and how late it comes is the machine's part.
#include "benches/timer/peers.hpp"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <sys/timerfd.h>
#include <unistd.h>

namespace bench {

Dates bareDates(double interval, double seconds) {
    using Clock = std::chrono::steady_clock;
    const int descriptor = ::timerfd_create(CLOCK_MONOTONIC, TFD_CLOEXEC);
    itimerspec setting{};
    setting.it_interval.tv_nsec = setting.it_value.tv_nsec = std::lround(interval * 1e9);
    const auto start = Clock::now();
    ::timerfd_settime(descriptor, 0, &setting, nullptr);
    Dates dates;
    const auto now = [&] { return std::chrono::duration<double>(Clock::now() - start).count(); };
    for (std::uint64_t passed = 0; now() < seconds && ::read(descriptor, &passed, sizeof passed) > 0;) {
        dates.push_back(now());
    }
    ::close(descriptor);
    return dates;
}

} // namespace bench
