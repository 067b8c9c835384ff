// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/dispatch/RunLoop.hpp"
#include "platform/dispatch/Timer.hpp"
#include "platform/dispatch/detail/TimerGrid.hpp"
#include "tests/support/testing.hpp"

using namespace platform;

namespace {

constexpr double Limit = 20; // seconds; enough for a loaded machine
using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
}

std::shared_ptr<Timer> every(double interval, Timer::Block block) {
    return Timer::scheduledTimerWithTimeInterval(interval, true, std::move(block));
}

std::size_t openDescriptors() {
    using std::filesystem::directory_iterator;
    return static_cast<std::size_t>(std::distance(directory_iterator("/proc/self/fd"), directory_iterator()));
}

// Runs `body` on the main thread's loop and on another thread's loop; both must behave alike.
void onBothLoops(const std::function<void()>& body) {
    body();
    std::thread(body).join();
}

} // namespace

TEST(TimerGrid, AFiringExactlyAtItsDateIsFollowedByTheNextDate) {
    constexpr std::int64_t Start = 7'123'456'789'012; // two hours after the machine has booted
    const double intervals[] = {0.005F, 0.009F, 1 / 60.0F, 0.005, 1 / 3.0, 0.0001, 1e-9, 2.5e-9, 86400.1F};
    for (const double seconds : intervals) {
        const TimerGrid grid{Start, seconds * 1e9};
        std::int64_t now = Start;
        for (int k = 1; k <= 2000; ++k) {
            const std::int64_t date = grid.dateAfter(now);
            ASSERT_EQ(date, Start + std::llround(k * grid.interval)) << seconds << ", date " << k;
            ASSERT_EQ(grid.dateAfter(date - 1), date) << seconds << ", date " << k;
            now = date;
        }
    }
}

TEST(Timer, LeavesOutWhatPassedAndKeepsTheGrid) {
    const auto start = Clock::now();
    std::vector<double> dates;
    const auto timer = every(0.01, [&] {
        dates.push_back(secondsSince(start));
        if (dates.size() == 2) std::this_thread::sleep_for(std::chrono::milliseconds(55));
    });
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return dates.size() == 6; }, Limit));
    timer->invalidate();
    EXPECT_GT(dates[3], 0.075 - 0.006); // no burst of missed firings after the work until 75 ms
    for (std::size_t i = 3; i < 6; ++i) {
        EXPECT_GE(std::floor(dates[i] / 0.01), std::floor(dates[i - 1] / 0.01));
    }
}

TEST(Timer, OncePerTurnInTheOrderOfDates) {
    std::vector<int> order;
    const auto slow = every(0.02, [&] { order.push_back(2); });
    const auto fast = every(0.001, [&] { order.push_back(1); });
    const auto alsoSlow = Timer::scheduledTimerWithTimeInterval(0.02, false, [&] { order.push_back(3); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    int turns = 0;
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return ++turns > 0 && order.size() >= 3; }, Limit));
    EXPECT_EQ(order, (std::vector<int>{1, 2, 3})); // all are due at once; each fires once
    EXPECT_FALSE(alsoSlow->isValid());
    fast->invalidate();
    slow->invalidate();
}

TEST(Timer, InvalidationInsideTheFiring) {
    onBothLoops([] {
        const auto token = std::make_shared<int>(0);
        int fired = 0, others = 0;
        std::shared_ptr<Timer> timer, other;
        timer = every(0.001, [&, token] {
            ++fired;
            timer->invalidate();
            other->invalidate();             // also due now, but after this timer
            EXPECT_EQ(token.use_count(), 2); // the running block is kept
            timer->invalidate();
        });
        other = every(0.001, [&] { ++others; });
        std::this_thread::sleep_for(std::chrono::milliseconds(3));
        RunLoop::current().runFor(0.02);
        EXPECT_EQ(fired, 1);
        EXPECT_EQ(others, 0);
        EXPECT_EQ(token.use_count(), 1);
    });
}

TEST(Timer, KeptByTheLoopUntilInvalidatedAndItsThreadsEnd) {
    std::weak_ptr<int> watch;
    std::thread([&] {
        const auto fired = std::make_shared<int>(0);
        watch = fired;
        (void)every(0.001, [fired] { ++*fired; });
        EXPECT_TRUE(RunLoop::current().runUntil([&] { return *fired >= 2; }, Limit));
    }).join();
    EXPECT_TRUE(watch.expired());
}

TEST(Timer, IntervalsThatAreNone) {
    constexpr double Infinity = std::numeric_limits<double>::infinity();
    int never = 0;
    const auto infinite = every(Infinity, [&] { ++never; });
    const auto aeons = every(1e300, [&] { ++never; });
    for (const double interval : {0.0, -1.0, -Infinity, std::nan(""), 0.0001, 1e-12, 5e-324}) {
        int fired = 0;
        const auto start = Clock::now();
        const auto timer = every(interval, [&] { ++fired; });
        EXPECT_TRUE(RunLoop::current().runUntil([&] { return fired >= 20; }, Limit)) << interval;
        const double least = interval >= 0.0001 || !(interval > 0) ? 0.0001 : 0;
        EXPECT_GE(secondsSince(start), 20 * least - 1e-6) << interval;
        timer->invalidate();
    }
    EXPECT_EQ(never, 0);
    infinite->invalidate();
    aeons->invalidate();
}

TEST(Timer, ManyShareOneDescriptor) {
    (void)every(1000, [] {}); // creates the thread's queue
    const std::size_t before = openDescriptors();
    std::size_t fired = 0;
    std::vector<std::shared_ptr<Timer>> timers;
    while (timers.size() < 10'000) {
        timers.push_back(every(0.02 + static_cast<double>(timers.size()) * 1e-6, [&] { ++fired; }));
    }
    EXPECT_EQ(openDescriptors(), before);
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return fired >= timers.size(); }, Limit));
    for (const auto& timer : timers) timer->invalidate();
}

TEST(Timer, ALoopInsideAFiringRunsTheOthers) {
    int others = 0, depth = 0, deepest = 0;
    const auto other = every(0.001, [&] { ++others; });
    bool done = false;
    const auto nesting = every(0.001, [&] {
        deepest = std::max(deepest, ++depth);
        const int before = others;
        EXPECT_TRUE(RunLoop::current().runUntil([&] { return others >= before + 3; }, Limit));
        --depth;
        done = true;
    });
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return done; }, Limit));
    EXPECT_EQ(deepest, 1); // a timer never fires within its own firing
    other->invalidate();
    nesting->invalidate();
}
