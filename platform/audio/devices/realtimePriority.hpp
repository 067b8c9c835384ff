// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include <pthread.h>
#include <sched.h>

namespace platform {

/// Asks for real-time scheduling of this thread, if it has none yet; a refusal changes nothing. A system
/// call: once, before the first block.
inline void askForRealtimePriority() noexcept {
    int policy = SCHED_OTHER;
    sched_param parameter{};
    if (pthread_getschedparam(pthread_self(), &policy, &parameter) != 0 || policy != SCHED_OTHER) return;
    parameter.sched_priority = 20;
    pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameter);
}

} // namespace platform
