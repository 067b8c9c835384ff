// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/DateFormatter.hpp"

#include <algorithm>
#include <array>
#include <atomic>
#include <charconv>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <limits>
#include <optional>
#include <unistd.h>

namespace platform {
namespace {

constexpr std::int64_t Day = 86400;
constexpr std::int64_t NoSpan = std::numeric_limits<std::int64_t>::min();

std::atomic<unsigned> timeZoneGeneration{0};

// The C library supports only years that fit into an int. Beyond them, the offset of the last such year is
// used.
constexpr std::int64_t FurthestSecond = 60'000'000'000'000'000;

struct Clock {
    CivilDay day;
    unsigned hour = 0;
    unsigned minute = 0;
    unsigned second = 0; // 60 in a leap second, if the file of the time zone has leap seconds
};

std::optional<Clock> askClock(std::int64_t seconds) {
    const std::time_t moment = seconds;
    std::tm local{};
    if (::localtime_r(&moment, &local) == nullptr) return std::nullopt;
    return Clock{{std::int64_t{local.tm_year} + 1900, static_cast<unsigned>(local.tm_mon) + 1,
                  static_cast<unsigned>(local.tm_mday)},
                 static_cast<unsigned>(local.tm_hour),
                 static_cast<unsigned>(local.tm_min),
                 static_cast<unsigned>(local.tm_sec)};
}

// Returns the offset of local time from UTC in seconds, or no value in a leap second.
std::optional<std::int64_t> askOffset(std::int64_t seconds) {
    const std::int64_t bounded = std::clamp(seconds, -FurthestSecond, FurthestSecond);
    const auto clock = askClock(bounded);
    if (!clock) return 0;
    if (clock->second > 59) return std::nullopt;
    const std::int64_t second = std::int64_t{clock->hour} * 3600 + clock->minute * 60 + clock->second;
    return daysTo(clock->day) * Day + second - bounded;
}

// A call of localtime_r takes ten times as long as formatting the text, so the offset is cached for spans of
// twelve days. If the offset changes within a span, each time in that span is converted by localtime_r. A
// span counts as constant if the offset is the same every three days. That is often enough: no zone of the
// time zone database has ever left an offset and returned to it in less than almost four days.
constexpr std::int64_t SpanDays = 12;
constexpr std::int64_t Sample = 3 * Day;

struct KnownSpan {
    std::int64_t number = NoSpan;
    std::int32_t offset = 0;
    bool changes = false;
};

struct KnownSpans {
    unsigned generation = std::numeric_limits<unsigned>::max();
    bool followsNoFile = false;
    std::array<KnownSpan, 2048> spans;
};

// Returns whether TZ itself defines daylight saving time instead of naming a file of the time zone database.
// Such daylight saving time may last only a few hours.
bool followsNoFile() {
    (void)askClock(0); // makes the C library read the time zone
    const char* name = std::getenv("TZ");
    if (name != nullptr && *name == ':') ++name;
    if (name == nullptr || *name == '\0' || ::daylight == 0) return false;
    const char* folder = std::getenv("TZDIR");
    std::string path = name;
    if (*name != '/') path.insert(0, std::string(folder != nullptr ? folder : "/usr/share/zoneinfo") + "/");
    return ::access(path.c_str(), R_OK) != 0;
}

KnownSpan askSpan(std::int64_t number) {
    const std::int64_t begin = number * SpanDays * Day;
    const auto first = askOffset(begin);
    KnownSpan span{number, static_cast<std::int32_t>(first.value_or(0)), !first};
    for (std::int64_t moment = begin + Sample; moment < begin + SpanDays * Day; moment += Sample) {
        span.changes = span.changes || askOffset(moment) != first;
    }
    span.changes = span.changes || askOffset(begin + SpanDays * Day - 1) != first;
    return span;
}

Clock clockAt(std::int64_t seconds) {
    thread_local KnownSpans known;
    if (const unsigned now = timeZoneGeneration.load(std::memory_order_relaxed); known.generation != now) {
        known.spans.fill({});
        known.generation = now;
        known.followsNoFile = followsNoFile();
    }
    constexpr std::int64_t Length = SpanDays * Day;
    const std::int64_t number = seconds / Length - (seconds % Length < 0 ? 1 : 0);
    KnownSpan& span = known.spans[static_cast<std::uint64_t>(number) % known.spans.size()];
    if (span.number != number) span = askSpan(number);
    if ((span.changes || known.followsNoFile) && seconds >= -FurthestSecond && seconds <= FurthestSecond) {
        if (const auto clock = askClock(seconds)) return *clock;
    }
    const std::int64_t local = seconds + span.offset;
    const std::int64_t day = local / Day - (local % Day < 0 ? 1 : 0);
    const auto second = static_cast<unsigned>(local - day * Day);
    return {civilDay(day), second / 3600, second / 60 % 60, second % 60};
}

char* writeTwo(char* text, unsigned number) {
    text[0] = static_cast<char>('0' + number / 10);
    text[1] = static_cast<char>('0' + number % 10);
    return text + 2;
}

} // namespace

char* DateFormatter::writeMediumDateTime(char* text, const Date& date) {
    // Keeps the arithmetic below from overflowing.
    constexpr std::int64_t Furthest = std::numeric_limits<std::int64_t>::max() - 2 * SpanDays * Day;
    const std::int64_t seconds = date.seconds > Furthest    ? Furthest
                                 : date.seconds < -Furthest ? -Furthest
                                                            : date.seconds;
    const auto [civil, hour, minute, second] = clockAt(seconds);

    std::memcpy(text, &"JanFebMarAprMayJunJulAugSepOctNovDec"[(civil.month - std::size_t{1}) * 3], 3);
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
    std::memcpy(text, " at ", 4); // NOLINT(bugprone-not-null-terminated-result): more text follows
    text += 4;
    const unsigned twelve = hour % 12 == 0 ? 12 : hour % 12;
    if (twelve >= 10) *text++ = '1';
    *text++ = static_cast<char>('0' + twelve % 10);
    *text++ = ':';
    text = writeTwo(text, minute);
    *text++ = ':';
    text = writeTwo(text, second);
    // NOLINTNEXTLINE(bugprone-not-null-terminated-result): the function returns the end of the text
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
