// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shows the progress of long work on a terminal. A thread of its own writes; nothing is shown in the first
// second or if standard error is not a terminal.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace tonewright::tool {

class Progress {
  public:
    /// Shows what `state` returns, from time to time; it is called on the thread.
    explicit Progress(std::function<std::string()> state);
    /// Erases the line.
    ~Progress();
    Progress(const Progress&) = delete;
    Progress& operator=(const Progress&) = delete;

  private:
    void run();

    std::function<std::string()> _state;
    std::mutex _mutex;
    std::condition_variable _changed;
    bool _hasEnded = false; // guarded by _mutex
    std::thread _thread;
};

} // namespace tonewright::tool
