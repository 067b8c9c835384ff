// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reports on standard error that a call does not return. A plug-in that blocks the main thread cannot be
// stopped from within the process, but the report names it.
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

    /// Reports after Patience if the object has not been destroyed by then. `what` is the subject of the
    /// sentence that is reported.
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
