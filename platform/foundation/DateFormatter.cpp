// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/DateFormatter.hpp"

#include <array>
#include <atomic>
#include <charconv>
#include <cstring>
#include <ctime>
#include <limits>

namespace platform {
namespace {

constexpr std::int64_t Day = 86400;
constexpr std::int64_t NoDay = std::numeric_limits<std::int64_t>::min();

std::atomic<unsigned> timeZoneGeneration{0};

// The C library knows years of an int only; beyond them the offset of the last it knows holds.
constexpr std::int64_t FurthestSecond = 60'000'000'000'000'000;

std::int64_t askOffset(std::int64_t seconds) {
    const std::int64_t bounded = seconds > FurthestSecond    ? FurthestSecond
                                 : seconds < -FurthestSecond ? -FurthestSecond
                                                             : seconds;
    const std::time_t moment = bounded;
    std::tm local{};
    return ::localtime_r(&moment, &local) != nullptr ? local.tm_gmtoff : 0;
}

// Asking the C library costs ten times what the rest of the text costs; a day of UTC on which the offset does
// not change needs to be asked for once. On the others every moment is asked for.
struct KnownDay {
    std::int64_t day = NoDay;
    std::int64_t offset = 0;
    bool changes = false;
};

struct KnownDays {
    unsigned generation = 0;
    std::array<KnownDay, 1024> days;
};

std::int64_t offsetAt(std::int64_t seconds, std::int64_t day) {
    thread_local KnownDays known;
    if (const unsigned now = timeZoneGeneration.load(std::memory_order_relaxed); known.generation != now) {
        known = {};
        known.generation = now;
    }
    KnownDay& entry = known.days[static_cast<std::uint64_t>(day) % known.days.size()];
    if (entry.day != day) {
        const std::int64_t first = askOffset(day * Day);
        entry = {day, first, askOffset(day * Day + Day - 1) != first};
    }
    return entry.changes ? askOffset(seconds) : entry.offset;
}

char* writeTwo(char* text, unsigned number) {
    text[0] = static_cast<char>('0' + number / 10);
    text[1] = static_cast<char>('0' + number % 10);
    return text + 2;
}

} // namespace

char* DateFormatter::writeMediumDateTime(char* text, const Date& date) {
    // Far beyond any calendar the arithmetic below would overflow.
    constexpr std::int64_t Furthest = std::numeric_limits<std::int64_t>::max() - 4 * Day;
    const std::int64_t seconds = date.seconds > Furthest    ? Furthest
                                 : date.seconds < -Furthest ? -Furthest
                                                            : date.seconds;
    const std::int64_t utcDay = seconds / Day - (seconds % Day < 0 ? 1 : 0);
    const std::int64_t local = seconds + offsetAt(seconds, utcDay);
    const std::int64_t day = local / Day - (local % Day < 0 ? 1 : 0);
    const auto second = static_cast<unsigned>(local - day * Day);
    const CivilDay civil = civilDay(day);

    std::memcpy(text, &"JanFebMarAprMayJunJulAugSepOctNovDec"[(civil.month - 1) * 3], 3);
    text[3] = ' ';
    text += 4;
    if (civil.day >= 10) *text++ = static_cast<char>('0' + civil.day / 10);
    *text++ = static_cast<char>('0' + civil.day % 10);
    *text++ = ',';
    *text++ = ' ';
    if (civil.year >= 1000 && civil.year <= 9999) {
        text = writeTwo(writeTwo(text, static_cast<unsigned>(civil.year) / 100),
                        static_cast<unsigned>(civil.year) % 100);
    } else {
        text = std::to_chars(text, text + 20, civil.year).ptr;
    }
    std::memcpy(text, " at ", 4);
    text += 4;
    const unsigned hour = second / 3600;
    const unsigned twelve = hour % 12 == 0 ? 12 : hour % 12;
    if (twelve >= 10) *text++ = '1';
    *text++ = static_cast<char>('0' + twelve % 10);
    *text++ = ':';
    text = writeTwo(text, second / 60 % 60);
    *text++ = ':';
    text = writeTwo(text, second % 60);
    std::memcpy(text, hour < 12 ? " AM" : " PM", 3);
    return text + 3;
}

std::string DateFormatter::stringFromDate(const Date& date) const {
    char text[MediumDateTimeLength];
    return {text, writeMediumDateTime(text, date)};
}

void DateFormatter::resetTimeZone() {
    ::tzset();
    timeZoneGeneration.fetch_add(1, std::memory_order_relaxed);
}

} // namespace platform
