// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "platform/dispatch/RunLoop.hpp"
#include "tests/support/testing.hpp"

namespace tonewright::test {

/// Runs the main loop until `done` returns true; returns false after thirty seconds, enough for a loaded
/// machine. Polls, because another thread can change the result without waking the loop.
inline bool waitFor(const std::function<bool()>& done) {
    const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(30);
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        // Gives the main loop time between two calls of `done`, because a call that reads the screen takes
        // longer than a frame.
        platform::RunLoop::current().runFor(0.003);
    }
    return true;
}

} // namespace tonewright::test
