// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shows on a terminal how far a long work is. A thread of its own writes; nothing is shown in the first
// second or when standard error is no terminal.
#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace tonewright::tool {

class Progress {
  public:
    /// Shows what `state` gives, from now and then; it is called on the thread.
    explicit Progress(std::function<std::string()> state);
    /// Takes the line away.
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
