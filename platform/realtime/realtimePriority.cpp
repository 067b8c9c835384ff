// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/realtime/realtimePriority.hpp"

#include <pthread.h>
#include <sched.h>

namespace platform {

void askForRealtimePriority() noexcept {
    int policy = SCHED_OTHER;
    sched_param parameter{};
    if (pthread_getschedparam(pthread_self(), &policy, &parameter) != 0 || policy != SCHED_OTHER) return;
    parameter.sched_priority = 20;
    pthread_setschedparam(pthread_self(), SCHED_FIFO, &parameter);
}

} // namespace platform
