// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// When an effect's process that has ended is started again. Any one thread.
#pragma once

#include <array>
#include <chrono>
#include <deque>
#include <optional>

namespace platform::lv2 {

class RestartPolicy {
  public:
    using Clock = std::chrono::steady_clock;

    /// The wait after the first end within a minute, the second, and so on. After one more there is no
    /// further start.
    static constexpr std::array Delays{std::chrono::seconds(0), std::chrono::seconds(1),
                                       std::chrono::seconds(4), std::chrono::seconds(15)};
    static constexpr std::chrono::minutes Forgiveness{1};

    /// Notes that a process ended, or did not start, at `now`.
    void noteEnd(Clock::time_point now) {
        forgive(now);
        _ends.push_back(now);
    }
    /// Forgets the ends that are more than a minute old at `now`.
    void forgive(Clock::time_point now) {
        while (!_ends.empty() && now - _ends.front() > Forgiveness) _ends.pop_front();
    }
    /// Forgets all ends.
    void clear() { _ends.clear(); }
    /// Returns the time from which a process may be started; absent if none is started any more.
    [[nodiscard]] std::optional<Clock::time_point> nextStart() const {
        if (_ends.empty()) return Clock::time_point::min();
        if (_ends.size() > Delays.size()) return std::nullopt;
        return _ends.back() + Delays[_ends.size() - 1];
    }
    /// Returns the time at which `forgive` forgets the oldest end; there must be one.
    [[nodiscard]] Clock::time_point nextForgiveness() const {
        return _ends.front() + Forgiveness + Clock::duration(1);
    }

  private:
    std::deque<Clock::time_point> _ends; // of the last minute
};

} // namespace platform::lv2
