// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A point in time, as file systems record it. Any thread.
#pragma once

#include <compare>
#include <cstdint>
#include <string>

namespace platform {

struct Date {
    std::int64_t seconds = 0;      // since 1970-01-01 00:00 UTC without leap seconds; may be negative
    std::uint32_t nanoseconds = 0; // 0 to 999,999,999, added to `seconds`

    /// Returns the current time of the system's real-time clock.
    [[nodiscard]] static Date now();
    /// Returns the time in UTC in the form "2026-11-16 09:40:14 +0000".
    [[nodiscard]] std::string description() const;

    friend constexpr auto operator<=>(const Date&, const Date&) = default;
};

/// A day of the (proleptic) Gregorian calendar.
struct CivilDay {
    std::int64_t year = 1970;
    unsigned month = 1; // 1 to 12
    unsigned day = 1;   // 1 to 31
};

/// Returns the day that is `days` after 1970-01-01.
[[nodiscard]] CivilDay civilDay(std::int64_t days) noexcept;
/// Returns the number of days from 1970-01-01 to `day`.
[[nodiscard]] std::int64_t daysTo(const CivilDay& day) noexcept;

} // namespace platform
