// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How much sooner than its date a sleeping thread asks to be woken. A processor that has gone to sleep takes
// its time to wake, in a virtual machine a tenth of a millisecond and more; what it usually takes is learnt
// from the wakings before, and asked for in advance. Private to platform/dispatch; one thread at a time.
#pragma once

#include <algorithm>
#include <cstdint>

namespace platform {

class WakeLead {
  public:
    /// The most that is asked for in advance, nanoseconds, and so the longest wait for a date after waking.
    static constexpr std::int64_t Longest = 200'000;

    /// Returns the lead, in nanoseconds, for a sleep of `sleep` nanoseconds: a short one is never deep.
    [[nodiscard]] std::int64_t forSleepOf(std::int64_t sleep) const noexcept {
        return std::clamp<std::int64_t>(sleep / 8, 0, _lead);
    }

    /// Takes account of a waking `late` nanoseconds after the moment that was asked for.
    void learn(std::int64_t late) noexcept {
        if (late < 0 || late > 2 * Longest) return; // the loop was not asleep
        // Steps of one up and three down rest where one waking in four is quicker: few are waited out.
        _lead = std::clamp<std::int64_t>(_lead + (late > _lead ? Step : -3 * Step), 0, Longest);
    }

  private:
    static constexpr std::int64_t Step = 1'000; // nanoseconds
    std::int64_t _lead = 0;
};

} // namespace platform
