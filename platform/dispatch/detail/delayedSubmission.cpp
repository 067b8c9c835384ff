// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One thread that waits for the next due submission; it starts with the first delayed task.
#include "platform/dispatch/detail/QueueImplementation.hpp"

#include <chrono>
#include <cmath>
#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace platform {
namespace {

using Clock = std::chrono::steady_clock;

class DelayClock {
  public:
    void add(Clock::time_point due, Task submit) {
        const std::scoped_lock lock(_mutex);
        _submissions.emplace(due, std::move(submit)); // equal dates keep the order in which they were added
        if (!_started) {
            _started = true;
            std::thread([this] { run(); }).detach();
        }
        _changed.notify_one();
    }

  private:
    void run() {
        std::unique_lock lock(_mutex);
        while (true) {
            if (_submissions.empty()) {
                _changed.wait(lock);
                continue;
            }
            const auto due = _submissions.begin()->first;
            if (Clock::now() < due) {
                _changed.wait_until(lock, due);
                continue;
            }
            auto node = _submissions.extract(_submissions.begin());
            lock.unlock();
            node.mapped()();
            node = {};
            lock.lock();
        }
    }

    std::mutex _mutex; // guards all fields
    std::condition_variable _changed;
    std::multimap<Clock::time_point, Task> _submissions;
    bool _started = false;
};

constexpr double LongestDelay = 1e9; // seconds; keeps the date inside the clock's range

} // namespace

void submitLater(double seconds, Task submit) {
    static auto* clock = new DelayClock; // outlives every static: its thread never ends
    const double delay = seconds > 0 ? std::fmin(seconds, LongestDelay) : 0;
    clock->add(Clock::now() +
                   std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(delay)),
               std::move(submit));
}

} // namespace platform
