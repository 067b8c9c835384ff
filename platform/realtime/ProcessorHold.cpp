// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/realtime/ProcessorHold.hpp"

#include <cstddef>
#include <sched.h>

namespace platform {
namespace {

// Of the calling thread.
struct State {
    int scopes = 0;
    bool isTaken = false;
    int processor = -1;
    cpu_set_t former{};
};
thread_local State state;

} // namespace

ProcessorHold::ProcessorHold() noexcept {
    ++state.scopes;
}

ProcessorHold::~ProcessorHold() {
    if (--state.scopes > 0) return;
    if (state.processor >= 0) ::sched_setaffinity(0, sizeof state.former, &state.former);
    state.isTaken = false;
    state.processor = -1;
}

int ProcessorHold::take() noexcept {
    if (state.isTaken || state.scopes == 0) return state.processor;
    state.isTaken = true;
    const int processor = ::sched_getcpu();
    if (processor < 0 || processor >= CPU_SETSIZE) return -1;
    if (::sched_getaffinity(0, sizeof state.former, &state.former) != 0) return -1;
    cpu_set_t one;
    CPU_ZERO(&one);
    CPU_SET(static_cast<std::size_t>(processor), &one);
    if (::sched_setaffinity(0, sizeof one, &one) == 0) state.processor = processor;
    return state.processor;
}

} // namespace platform
