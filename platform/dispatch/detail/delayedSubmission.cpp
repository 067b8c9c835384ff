// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The thread that waits for the next delayed submission. It starts with the first one.
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
        _submissions.emplace(due, std::move(submit)); // equal dates keep the order of insertion
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

constexpr double LongestDelay = 1e9; // seconds; keeps the date within the clock's range

} // namespace

void submitLater(double seconds, Task submit) {
    static auto* clock = new DelayClock; // never destroyed, because its thread never ends
    const double delay = seconds > 0 ? std::fmin(seconds, LongestDelay) : 0;
    clock->add(Clock::now() +
                   std::chrono::duration_cast<Clock::duration>(std::chrono::duration<double>(delay)),
               std::move(submit));
}

} // namespace platform
