// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The dates of a repeating timer: `start + k * interval` for k = 1, 2, ..., rounded to whole nanoseconds.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace platform {

struct TimerGrid {
    static constexpr std::int64_t Never = std::numeric_limits<std::int64_t>::max();
    static constexpr double LongestNanoseconds = 4e18; // keeps every date within the range of std::int64_t

    std::int64_t start = 0; // nanoseconds
    double interval = 0;    // nanoseconds, rarely a whole number

    /// Returns the first date after `now`, or `Never` if that is more than a century after `start`.
    [[nodiscard]] std::int64_t dateAfter(std::int64_t now) const noexcept {
        const double step = std::max(interval, 1.0); // a shorter interval is due in every iteration anyway
        auto k = static_cast<std::int64_t>(static_cast<double>(now - start) / step);
        // The date for `k` may still be at or before `now`, also because of rounding, so the rounded dates
        // themselves are compared.
        for (;; ++k) {
            const double offset = static_cast<double>(k) * step;
            if (!(offset < LongestNanoseconds)) return Never;
            const std::int64_t date = start + std::llround(offset);
            if (date > now) return date;
        }
    }
};

} // namespace platform
