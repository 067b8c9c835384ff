// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A timer for pages that do not answer. Main thread only.
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

    /// Sets the function that is called `seconds` after `start` or `restart`, unless `stop` is called before.
    void set(double seconds, std::function<void()> onTimeout);
    void start();
    /// Starts again from 0 if the timer is running.
    void restart();
    void stop();

  private:
    double _seconds = 0; // 0: no time-out
    std::function<void()> _onTimeout;
    guint _source = 0;
};

} // namespace platform
