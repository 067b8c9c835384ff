// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shows the progress of a long task on the terminal, from a thread of its own. Shows nothing during the first
// second, or if standard error is not a terminal.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace tonewright::tool {

class Progress {
  public:
    /// Starts a thread that calls `state` regularly and shows the text that it returns.
    explicit Progress(std::function<std::string()> state);
    /// Ends the thread and erases the line.
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
