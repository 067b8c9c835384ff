// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/dispatch/RunLoop.hpp"
#include "tests/support/testing.hpp"

using namespace platform;

namespace {
constexpr double Limit = 20; // seconds; enough for a loaded machine
}

TEST(MainQueue, RunsInOrderLaterAndOnTheMainThread) {
    std::vector<int> order, expected;
    std::atomic<bool> done{false};
    for (int i = 0; i < 1000; ++i) expected.push_back(i);
    std::thread([&] {
        for (const int i : expected) DispatchQueue::main().async([&, i] { order.push_back(i); });
        DispatchQueue::main().async([&] { done = isMainThread(); });
    }).join();
    EXPECT_TRUE(order.empty()); // not during async()
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return done.load(); }, Limit));
    EXPECT_EQ(order, expected);
}

TEST(SerialQueue, OneAtATimeInOrderAcrossAsyncAndSync) {
    DispatchQueue queue("test");
    std::vector<int> order, expected; // needs no lock, because the queue is serial
    for (int i = 0; i < 1500; i += 3) {
        queue.async([&, i] { order.push_back(i); });
        queue.async([&, i] { order.push_back(i + 1); });
        queue.sync([&, caller = std::this_thread::get_id()] {
            EXPECT_EQ(std::this_thread::get_id(), caller);
            order.push_back(i + 2);
        });
        expected.insert(expected.end(), {i, i + 1, i + 2});
    }
    EXPECT_EQ(order, expected);
}

TEST(SerialQueue, SyncFromManyThreadsExcludes) {
    DispatchQueue queue("test");
    int count = 0;
    std::vector<std::thread> threads;
    for (int t = 0; t < 4; ++t) {
        threads.emplace_back([&] {
            for (int i = 0; i < 2000; ++i) {
                queue.sync([&] { ++count; });
                if (i % 16 == 0) queue.async([&] { ++count; });
            }
        });
    }
    for (auto& thread : threads) thread.join();
    queue.sync([] {});
    EXPECT_EQ(count, 4 * (2000 + 125));
}

TEST(SerialQueue, SyncOnItselfIsFatal) {
    EXPECT_DEATH(
        {
            DispatchQueue outer("outer");
            DispatchQueue inner("inner");
            outer.sync([&] { inner.sync([&] { outer.sync([] {}); }); });
        },
        "already owned");
}

TEST(SerialQueue, MayBeReleasedOnItsOwnThreadAndDropsNothing) {
    auto queue = std::make_shared<DispatchQueue>("test");
    std::atomic<int> ran{0};
    auto* raw = queue.get();
    raw->async([&ran, queue = std::move(queue)]() mutable {
        queue->async([&ran] {
            ++ran;
            DispatchQueue::main().async([] {}); // wakes the waiting loop
        });
        queue.reset();
        ++ran;
    });
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return ran == 2; }, Limit));
}

TEST(GlobalQueue, RunsConcurrently) {
    // Each task waits until both are running; the test waits until both have ended.
    std::atomic<int> inside{0}, met{0}, left{0};
    for (int i = 0; i < 2; ++i) {
        DispatchQueue::global().async([&] {
            ++inside;
            const auto end = std::chrono::steady_clock::now() + std::chrono::duration<double>(Limit);
            while (inside < 2 && std::chrono::steady_clock::now() < end) std::this_thread::yield();
            if (inside == 2) ++met;
            ++left;
        });
    }
    while (left < 2) std::this_thread::yield();
    EXPECT_EQ(met, 2);
}

TEST(DelayedSubmission, KeepsDatesAndOrder) {
    const auto start = std::chrono::steady_clock::now();
    std::vector<int> order;
    double elapsed = 0;
    DispatchQueue::main().asyncAfter(0.06, [&] {
        order.push_back(2);
        elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    });
    DispatchQueue::main().asyncAfter(0.02, [&] { order.push_back(1); });
    DispatchQueue::main().asyncAfter(-1, [&] { order.push_back(0); });
    EXPECT_TRUE(RunLoop::current().runUntil([&] { return order.size() == 3; }, Limit));
    EXPECT_EQ(order, (std::vector<int>{0, 1, 2}));
    EXPECT_GE(elapsed, 0.06);
}
