// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/termination.hpp"

#include <cstdlib>
#include <mutex>
#include <unistd.h>
#include <utility>
#include <vector>

namespace platform {
namespace {

struct Handlers {
    std::mutex mutex; // guards the list; not held while a handler runs
    std::vector<std::function<void()>> list;
};

Handlers& handlers() {
    // Never destroyed, because a thread may open the sound output while the process exits.
    static auto* all = new Handlers;
    return *all;
}

} // namespace

void endAtOnceOnSignals() {
    for (const int number : TerminationSignals) std::signal(number, [](int) { ::_exit(EXIT_SUCCESS); });
}

void atTermination(std::function<void()> handler) {
    const std::scoped_lock lock(handlers().mutex);
    handlers().list.push_back(std::move(handler));
}

void prepareForTermination() {
    std::vector<std::function<void()>> list;
    {
        const std::scoped_lock lock(handlers().mutex);
        list.swap(handlers().list);
    }
    for (auto handler = list.rbegin(); handler != list.rend(); ++handler) (*handler)();
}

} // namespace platform
