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
constexpr std::int64_t NoSpan = std::numeric_limits<std::int64_t>::min();

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

// Asking the C library costs ten times what the rest of the text costs; a span of UTC in which the offset
// does not change needs to be asked for once. In the others every moment is asked for. A span is taken as
// constant when the offset is the same every three days: the shortest time for which any zone's clock has
// left an offset and come back to it is nearly four (the time zone database).
constexpr std::int64_t SpanDays = 12;
constexpr std::int64_t Sample = 3 * Day;

struct KnownSpan {
    std::int64_t number = NoSpan;
    std::int32_t offset = 0;
    bool changes = false;
};

struct KnownSpans {
    unsigned generation = 0;
    std::array<KnownSpan, 2048> spans;
};

KnownSpan askSpan(std::int64_t number) {
    const std::int64_t begin = number * SpanDays * Day;
    const std::int64_t first = askOffset(begin);
    KnownSpan span{number, static_cast<std::int32_t>(first), false};
    for (std::int64_t moment = begin + Sample; moment < begin + SpanDays * Day; moment += Sample)
        span.changes = span.changes || askOffset(moment) != first;
    span.changes = span.changes || askOffset(begin + SpanDays * Day - 1) != first;
    return span;
}

std::int64_t offsetAt(std::int64_t seconds) {
    thread_local KnownSpans known;
    if (const unsigned now = timeZoneGeneration.load(std::memory_order_relaxed); known.generation != now) {
        known.spans.fill({});
        known.generation = now;
    }
    constexpr std::int64_t Length = SpanDays * Day;
    const std::int64_t number = seconds / Length - (seconds % Length < 0 ? 1 : 0);
    KnownSpan& span = known.spans[static_cast<std::uint64_t>(number) % known.spans.size()];
    if (span.number != number) span = askSpan(number);
    return span.changes ? askOffset(seconds) : span.offset;
}

char* writeTwo(char* text, unsigned number) {
    text[0] = static_cast<char>('0' + number / 10);
    text[1] = static_cast<char>('0' + number % 10);
    return text + 2;
}

} // namespace

char* DateFormatter::writeMediumDateTime(char* text, const Date& date) {
    // Far beyond any calendar the arithmetic below would overflow.
    constexpr std::int64_t Furthest = std::numeric_limits<std::int64_t>::max() - 2 * SpanDays * Day;
    const std::int64_t seconds = date.seconds > Furthest    ? Furthest
                                 : date.seconds < -Furthest ? -Furthest
                                                            : date.seconds;
    const std::int64_t local = seconds + offsetAt(seconds);
    const std::int64_t day = local / Day - (local % Day < 0 ? 1 : 0);
    const auto second = static_cast<unsigned>(local - day * Day);
    const CivilDay civil = civilDay(day);

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
    std::memcpy(text, " at ", 4); // NOLINT(bugprone-not-null-terminated-result): the text goes on
    text += 4;
    const unsigned hour = second / 3600;
    const unsigned twelve = hour % 12 == 0 ? 12 : hour % 12;
    if (twelve >= 10) *text++ = '1';
    *text++ = static_cast<char>('0' + twelve % 10);
    *text++ = ':';
    text = writeTwo(text, second / 60 % 60);
    *text++ = ':';
    text = writeTwo(text, second % 60);
    // NOLINTNEXTLINE(bugprone-not-null-terminated-result): the end is what is returned
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
