// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/dispatch/detail/TimerQueue.hpp"

#include "platform/dispatch/detail/TimerGrid.hpp"
#include "platform/dispatch/detail/loopContext.hpp"
#include "platform/foundation/fatal.hpp"

#include <cerrno>
#include <cstring>
#include <string>
#include <sys/timerfd.h>
#include <time.h>
#include <unistd.h>
#include <vector>

namespace platform {
namespace {

constexpr std::int64_t Never = TimerGrid::Never;
constexpr std::int64_t NanosecondsPerSecond = 1'000'000'000;

} // namespace

std::int64_t steadyNanoseconds() noexcept {
    timespec time{};
    ::clock_gettime(CLOCK_MONOTONIC, &time);
    return time.tv_sec * NanosecondsPerSecond + time.tv_nsec;
}

struct TimerQueue::Source {
    GSource base;
    TimerQueue* queue;
    gpointer tag; // the tag of the timerfd in this source

    static Source& of(GSource* source) { return *reinterpret_cast<Source*>(source); }
    static gboolean prepare(GSource*, gint* timeout) {
        *timeout = -1;
        return FALSE;
    }
    static gboolean check(GSource* source) {
        return g_source_query_unix_fd(source, of(source).tag) != 0 ? TRUE : FALSE;
    }
    static gboolean dispatch(GSource* source, GSourceFunc, gpointer) {
        of(source).queue->fireDue();
        return G_SOURCE_CONTINUE;
    }
};

TimerQueue& TimerQueue::current() {
    const RunLoop loop =
        RunLoop::current(); // created before the queue, so that the loop is destroyed after the queue
    (void)loop;
    thread_local TimerQueue queue;
    return queue;
}

TimerQueue::TimerQueue()
    : _armedDate(Never)
    , _askedDate(Never)
    , _descriptor(::timerfd_create(CLOCK_MONOTONIC, TFD_NONBLOCK | TFD_CLOEXEC)) {
    if (_descriptor == -1) fatal(std::string("A timer could not be created: ") + std::strerror(errno));
    static GSourceFuncs functions = {Source::prepare, Source::check, Source::dispatch,
                                     nullptr,         nullptr,       nullptr};
    _source = g_source_new(&functions, sizeof(Source));
    Source& source = Source::of(_source);
    source.queue = this;
    source.tag = g_source_add_unix_fd(_source, _descriptor, G_IO_IN);
    g_source_set_name(_source, "timers");
    g_source_set_can_recurse(_source,
                             TRUE); // a block may run the loop; its own timer does not fire meanwhile
    g_source_attach(_source, contextOf(RunLoop::current()));
}

TimerQueue::~TimerQueue() {
    g_source_destroy(_source);
    g_source_unref(_source);
    // Releasing a block may invalidate other timers of this thread, so they are removed one by one.
    while (!_timers.empty()) {
        const auto timer = _timers.begin()->second;
        timer->invalidate();
    }
    ::close(_descriptor);
}

void TimerQueue::add(const std::shared_ptr<Timer>& timer) {
    timer->_number = _nextNumber++;
    timer->_date = TimerGrid{timer->_start, timer->_intervalNanoseconds}.dateAfter(timer->_start);
    _timers.emplace(Key(timer->_date, timer->_number), timer);
    if (timer->_date < _armedDate) armAt(timer->_date);
}

void TimerQueue::remove(const Timer& timer) {
    // The timerfd is not set again: a wake-up with nothing due is cheaper than a system call per removal.
    const auto node = _timers.extract(Key(timer._date, timer._number));
}

// Woken shortly before the first date, spins until that date: another sleep would end late.
std::int64_t TimerQueue::waitForDate(std::int64_t now) {
    if (_askedDate != Never) _lead.learn(now - _askedDate);
    if (_timers.empty()) return now;
    const std::int64_t date = _timers.begin()->first.first;
    if (date - now <= WakeLead::Longest) {
        while (now < date) now = steadyNanoseconds();
    }
    return now;
}

void TimerQueue::fireDue() {
    const std::int64_t now = waitForDate(steadyNanoseconds());
    std::vector<std::shared_ptr<Timer>> due;
    while (!_timers.empty() && _timers.begin()->first.first <= now) {
        auto node = _timers.extract(_timers.begin());
        Timer& timer = *node.mapped();
        if (!timer._firing) due.push_back(node.mapped());
        // The next date is set before the block runs, because the block may invalidate the timer or run the
        // loop.
        const TimerGrid grid{timer._start, timer._intervalNanoseconds};
        timer._date = timer._repeats ? grid.dateAfter(now) : Never;
        node.key().first = timer._date;
        // Usually this timer is the first one again; the hint then makes the insertion take constant time.
        _timers.insert(_timers.begin(), std::move(node));
    }
    arm(); // before the blocks run: a block that runs the loop must not stop the other timers
    for (const auto& timer : due) fire(*timer);
    // A timer whose block takes longer than its interval is already due again.
    setTurnPriority(_source, !_timers.empty() && _timers.begin()->first.first <= steadyNanoseconds());
}

void TimerQueue::fire(Timer& timer) {
    if (!timer.isValid() || timer._firing) return;
    if (!timer._repeats) std::exchange(timer._queue, nullptr)->remove(timer);
    timer._firing = true;
    if (timer._block) timer._block();
    timer._firing = false;
    if (!timer.isValid()) std::exchange(timer._block, nullptr);
}

void TimerQueue::arm() {
    armAt(_timers.empty() ? Never : _timers.begin()->first.first);
}

// Setting a timerfd also clears its expiration count, so the descriptor need not be read.
void TimerQueue::armAt(std::int64_t date) {
    _armedDate = _askedDate = date;
    itimerspec setting{};
    if (date != Never) {
        _askedDate -= _lead.forSleepOf(date - steadyNanoseconds());
        setting.it_value.tv_sec = _askedDate / NanosecondsPerSecond;
        setting.it_value.tv_nsec = _askedDate % NanosecondsPerSecond;
    }
    ::timerfd_settime(_descriptor, TFD_TIMER_ABSTIME, &setting, nullptr);
}

} // namespace platform
