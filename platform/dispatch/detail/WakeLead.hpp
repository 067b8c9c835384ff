// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How much earlier than its date a sleeping thread asks to be woken. A processor that has gone to sleep takes
// time to wake, in a virtual machine a tenth of a millisecond and more; the usual delay is learnt from
// earlier wake-ups and subtracted in advance. One thread at a time.
#pragma once

#include <algorithm>
#include <cstdint>

namespace platform {

class WakeLead {
  public:
    /// The largest lead, in nanoseconds, and therefore the longest active wait after waking.
    static constexpr std::int64_t Longest = 200'000;

    /// Returns the lead, in nanoseconds, for a sleep of `sleep` nanoseconds: during a short one the processor
    /// does not sleep deeply.
    [[nodiscard]] std::int64_t forSleepOf(std::int64_t sleep) const noexcept {
        return std::clamp<std::int64_t>(sleep / 8, 0, _lead);
    }

    /// Records that the thread woke `late` nanoseconds after the requested moment.
    void learn(std::int64_t late) noexcept {
        if (late < 0 || late > 2 * Longest) return; // the loop was not asleep
        // With steps of one up and three down the lead settles where one wake-up in four is earlier: active
        // waits are rare.
        _lead = std::clamp<std::int64_t>(_lead + (late > _lead ? Step : -3 * Step), 0, Longest);
    }

  private:
    static constexpr std::int64_t Step = 1'000; // nanoseconds
    std::int64_t _lead = 0;
};

} // namespace platform
