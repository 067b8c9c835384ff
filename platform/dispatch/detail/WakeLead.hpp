// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The time by which a sleeping thread asks to be woken early. A sleeping processor needs time to wake up, a
// tenth of a millisecond or more in a virtual machine. This class estimates the usual delay from earlier
// wake-ups, so that the caller can subtract the estimate from the next date. One thread at a time.
#pragma once

#include <algorithm>
#include <cstdint>

namespace platform {

class WakeLead {
  public:
    /// The largest lead, in nanoseconds, and therefore the longest active wait after waking.
    static constexpr std::int64_t Longest = 200'000;

    /// Returns the lead, in nanoseconds, for a sleep of `sleep` nanoseconds. A short sleep gets a shorter
    /// lead, because the processor does not enter a deep sleep state then.
    [[nodiscard]] std::int64_t forSleepOf(std::int64_t sleep) const noexcept {
        return std::clamp<std::int64_t>(sleep / 8, 0, _lead);
    }

    /// Records that the thread woke up `late` nanoseconds after the requested time.
    void learn(std::int64_t late) noexcept {
        if (late < 0 || late > 2 * Longest) return; // not a wake-up by the timer, or the loop was busy
        // With steps of one up and three down, the lead settles at the value that three of four delays
        // exceed. The thread therefore wakes up too early, and has to spin, only one time in four.
        _lead = std::clamp<std::int64_t>(_lead + (late > _lead ? Step : -3 * Step), 0, Longest);
    }

  private:
    static constexpr std::int64_t Step = 1'000; // nanoseconds
    std::int64_t _lead = 0;
};

} // namespace platform
