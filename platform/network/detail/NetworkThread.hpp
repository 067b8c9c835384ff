// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The thread that runs all HTTP transfers, with its own GLib loop.
#pragma once

#include <deque>
#include <functional>
#include <mutex>

typedef struct _GMainContext GMainContext;

namespace platform {

class NetworkThread {
  public:
    /// Returns the process's network thread. It starts at the first call and never ends.
    [[nodiscard]] static NetworkThread& shared();

    /// Runs `work` on the network thread, in the order of submission. Any thread.
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
