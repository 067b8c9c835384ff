// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/Date.hpp"

#include <ctime>

namespace platform {

Date Date::now() {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return {now.tv_sec, static_cast<std::uint32_t>(now.tv_nsec)};
}

// Counts in eras of 400 years. Years start on the first of March, so that a leap day is the last day of its
// year.
CivilDay civilDay(std::int64_t days) noexcept {
    constexpr std::int64_t DaysOfEra = 146097;
    const std::int64_t shifted = days + 719468; // since 0000-03-01
    const std::int64_t era = (shifted >= 0 ? shifted : shifted - (DaysOfEra - 1)) / DaysOfEra;
    const auto dayOfEra = static_cast<unsigned>(shifted - era * DaysOfEra);
    const unsigned yearOfEra = (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
    const unsigned dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
    const unsigned monthFromMarch = (5 * dayOfYear + 2) / 153;
    const unsigned month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    return {static_cast<std::int64_t>(yearOfEra) + era * 400 + (month <= 2 ? 1 : 0), month,
            dayOfYear - (153 * monthFromMarch + 2) / 5 + 1};
}

std::int64_t daysTo(const CivilDay& day) noexcept {
    const std::int64_t year = day.year - (day.month <= 2 ? 1 : 0);
    const std::int64_t era = (year >= 0 ? year : year - 399) / 400;
    const std::int64_t yearOfEra = year - era * 400;
    const unsigned monthFromMarch = day.month > 2 ? day.month - 3 : day.month + 9;
    const std::int64_t dayOfYear = (153 * monthFromMarch + 2) / 5 + day.day - 1;
    return era * 146097 + yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear - 719468;
}

std::string Date::description() const {
    constexpr std::int64_t Day = 86400;
    const std::int64_t rest = seconds % Day;
    const std::int64_t days = seconds / Day - (rest < 0 ? 1 : 0);
    const auto second = static_cast<unsigned>(rest < 0 ? rest + Day : rest);
    const CivilDay civil = civilDay(days);
    std::string text;
    text.reserve(32);
    const std::string year = std::to_string(civil.year);
    if (civil.year >= 0 && year.size() < 4) text.assign(4 - year.size(), '0');
    text += year;
    const auto append = [&text](char before, unsigned number) {
        text += before;
        text += static_cast<char>('0' + number / 10);
        text += static_cast<char>('0' + number % 10);
    };
    append('-', civil.month);
    append('-', civil.day);
    append(' ', second / 3600);
    append(':', second / 60 % 60);
    append(':', second % 60);
    return text += " +0000";
}

} // namespace platform
