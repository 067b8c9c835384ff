// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The timers of one thread, ordered by date, on one timerfd in the thread's loop. Must be used only on that
// thread.
#pragma once

#include "platform/dispatch/Timer.hpp"
#include "platform/dispatch/detail/WakeLead.hpp"

#include <cstdint>
#include <glib.h>
#include <map>
#include <memory>
#include <utility>

namespace platform {

/// Returns the time of CLOCK_MONOTONIC in nanoseconds.
[[nodiscard]] std::int64_t steadyNanoseconds() noexcept;

class TimerQueue {
  public:
    /// Returns the calling thread's queue.
    [[nodiscard]] static TimerQueue& current();

    TimerQueue();
    ~TimerQueue();
    TimerQueue(const TimerQueue&) = delete;
    TimerQueue& operator=(const TimerQueue&) = delete;

    /// Stores `timer` and sets its first date.
    void add(const std::shared_ptr<Timer>& timer);
    void remove(const Timer& timer);
    /// Fires the timers that are due, each at most once.
    void fireDue();

  private:
    using Key = std::pair<std::int64_t, std::uint64_t>; // date, number
    using Timers = std::map<Key, std::shared_ptr<Timer>>;
    struct Source;

    void fire(Timer& timer);
    void arm();
    void armAt(std::int64_t date);
    [[nodiscard]] std::int64_t waitForDate(std::int64_t now);

    Timers _timers;
    std::uint64_t _nextNumber = 0;
    std::int64_t _armedDate; // the date of the first timer when the timerfd was last set
    std::int64_t _askedDate; // the time that the timerfd was set to: the armed date minus the lead
    WakeLead _lead;
    int _descriptor;
    GSource* _source;
};

} // namespace platform
