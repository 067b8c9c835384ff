// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shows on a terminal how far a long scan is. A thread of its own writes; nothing is shown in the first
// second or when standard error is no terminal.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>
#include <thread>

namespace tonewright::tool {

class ScanProgress {
  public:
    ScanProgress();
    /// Take the line away.
    ~ScanProgress();
    ScanProgress(const ScanProgress&) = delete;
    ScanProgress& operator=(const ScanProgress&) = delete;

  private:
    void run();

    std::int64_t _firstID;
    std::mutex _mutex;
    std::condition_variable _changed;
    bool _hasEnded = false; // guarded by _mutex
    std::thread _thread;
};

} // namespace tonewright::tool
