// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/dispatch/Timer.hpp"

#include "platform/dispatch/detail/TimerQueue.hpp"

#include <utility>

namespace platform {
namespace {

constexpr double ShortestInterval = 0.0001; // seconds; used for intervals that are not positive

} // namespace

Timer::Timer(TimerQueue& queue, double intervalNanoseconds, bool repeats, Block block)
    : _queue(&queue)
    , _intervalNanoseconds(intervalNanoseconds)
    , _start(steadyNanoseconds())
    , _block(std::move(block))
    , _repeats(repeats) {}

std::shared_ptr<Timer> Timer::scheduledTimerWithTimeInterval(double interval, bool repeats, Block block) {
    TimerQueue& queue = TimerQueue::current();
    const double seconds = interval > 0 ? interval : ShortestInterval; // NaN fails the comparison too
    std::shared_ptr<Timer> timer(new Timer(queue, seconds * 1e9, repeats, std::move(block)));
    queue.add(timer);
    return timer;
}

void Timer::invalidate() {
    if (_queue == nullptr) return;
    const auto self = shared_from_this(); // the timer queue may hold the last reference
    std::exchange(_queue, nullptr)->remove(*this);
    // Destroying the block may call this timer again; the timer is already invalid then. A block that is
    // running is destroyed after it returns.
    if (!_firing) std::exchange(_block, nullptr);
}

} // namespace platform
