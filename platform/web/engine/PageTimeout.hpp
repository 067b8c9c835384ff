// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The time-out of a page that sends nothing. Main thread only.
#pragma once

#include <functional>
#include <glib.h>

namespace platform {

class PageTimeout {
  public:
    PageTimeout() = default;
    ~PageTimeout() { stop(); }
    PageTimeout(const PageTimeout&) = delete;
    PageTimeout& operator=(const PageTimeout&) = delete;

    /// Calls `onTimeout` when `seconds` pass between `start` or `restart` and `stop`.
    void set(double seconds, std::function<void()> onTimeout);
    void start();
    /// Starts counting again, if it is counting.
    void restart();
    void stop();

  private:
    double _seconds = 0; // not set
    std::function<void()> _onTimeout;
    guint _source = 0;
};

} // namespace platform
