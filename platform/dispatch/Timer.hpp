// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Timers of a thread's run loop. A timer belongs to the thread that schedules it: it fires on that thread
// while the thread runs its loop, and all its operations must be called on that thread. All timers of a
// thread share one timerfd.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace platform {

class TimerQueue;

class Timer final : public std::enable_shared_from_this<Timer> {
  public:
    using Block = std::function<void()>;

    /// Schedules `block` on the calling thread's loop, `interval` seconds from now and, if `repeats` is set,
    /// at every further multiple of `interval`. An interval that is 0, negative or NaN counts as 0.0001
    /// seconds; an infinite one never fires.
    ///
    /// A timer fires at most once per loop iteration. Dates that passed while the loop was busy are skipped,
    /// and the next date is again a multiple of `interval` after the start, so that firings neither bunch up
    /// nor drift. Timers that are due together fire in the order of their dates, and in the order of creation
    /// if their dates are equal.
    ///
    /// The loop keeps the timer and its block alive until the timer is invalidated or the thread ends. A
    /// timer that does not repeat is invalidated when it fires.
    [[nodiscard]] static std::shared_ptr<Timer> scheduledTimerWithTimeInterval(double interval, bool repeats,
                                                                               Block block);

    /// Stops the timer from firing again and releases its block; a block that is running returns first. May
    /// be called by the block itself, and repeatedly.
    void invalidate();
    /// Returns whether the timer may still fire.
    [[nodiscard]] bool isValid() const noexcept { return _queue != nullptr; }

    ~Timer() = default;
    Timer(const Timer&) = delete;
    Timer& operator=(const Timer&) = delete;

  private:
    friend class TimerQueue;
    Timer(TimerQueue& queue, double intervalNanoseconds, bool repeats, Block block);

    TimerQueue* _queue; // null when the timer is invalid
    double _intervalNanoseconds;
    std::int64_t _start; // steady-clock nanoseconds; firing dates are multiples of the interval after it
    std::int64_t _date = 0;
    std::uint64_t _number = 0; // orders timers with equal dates
    Block _block;
    bool _repeats;
    bool _firing = false;
};

} // namespace platform
