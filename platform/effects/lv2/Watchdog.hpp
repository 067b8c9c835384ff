// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reports on standard error that a call in this process does not return. Foreign code that blocks the main
// thread cannot be stopped from inside; this at least names it.
#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <thread>

namespace platform::lv2 {

class Watchdog {
  public:
    static constexpr auto Patience = std::chrono::seconds(5);

    /// Watches the scope that starts here. `what` is the start of the sentence.
    explicit Watchdog(std::string what);
    ~Watchdog();
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;

  private:
    std::mutex _mutex;
    std::condition_variable _changed;
    bool _isOver = false; // guarded by _mutex
    std::thread _thread;
};

} // namespace platform::lv2
