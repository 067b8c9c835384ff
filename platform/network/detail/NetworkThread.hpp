// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The one thread on which all network work runs, with its own loop.
#pragma once

#include <deque>
#include <functional>
#include <mutex>

typedef struct _GMainContext GMainContext;

namespace platform {

class NetworkThread {
  public:
    /// Returns the thread of the process; it starts at the first use and never ends.
    [[nodiscard]] static NetworkThread& shared();

    /// Runs `work` on the thread, after what was submitted before. Any thread.
    void run(std::function<void()> work);
    [[nodiscard]] GMainContext* context() const noexcept { return _context; }

  private:
    NetworkThread();
    void runNext();

    GMainContext* _context;
    std::mutex _mutex;
    std::deque<std::function<void()>> _work; // guarded by _mutex
};

} // namespace platform
