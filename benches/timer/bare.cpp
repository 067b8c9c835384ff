// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The limit: a loop that only reads a periodic timer of the kernel. Nothing can be left out of this loop, so
// lost and late firings are due to the machine.
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
