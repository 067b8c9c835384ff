// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The end of patience with a page of which nothing comes. Main thread only.
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

    /// Have `onTimeout` called when `seconds` pass between `start` or `restart` and `stop`.
    void set(double seconds, std::function<void()> onTimeout);
    void start();
    /// Begins to count anew, if it counts.
    void restart();
    void stop();

  private:
    double _seconds = 0; // not set
    std::function<void()> _onTimeout;
    guint _source = 0;
};

} // namespace platform
