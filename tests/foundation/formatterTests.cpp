// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/ByteCountFormatter.hpp"
#include "platform/foundation/DateFormatter.hpp"
#include "platform/foundation/FileAttributes.hpp"
#include "platform/foundation/NSNumber.hpp"
#include "tests/support/testing.hpp"

using namespace platform;

namespace {

// Returns the text that the formatter should return, produced by the C library.
std::string expected(std::int64_t seconds) {
    const std::time_t moment = seconds;
    std::tm local{};
    ::localtime_r(&moment, &local);
    char text[64];
    const char* format = "%b %-d, %-Y at %-I:%M:%S %p"; // the flag "-" is an extension
    std::strftime(text, sizeof text, format, &local);
    return text;
}

class TimeZone {
  public:
    explicit TimeZone(const char* name) {
        ::setenv("TZ", name, 1);
        DateFormatter::resetTimeZone();
    }
    ~TimeZone() {
        ::unsetenv("TZ");
        DateFormatter::resetTimeZone();
    }
};

} // namespace

TEST(DateFormatter, AgreesWithTheCLibraryInEveryZoneAndCentury) {
    for (const char* name :
         {"UTC", "Europe/Berlin", "America/New_York", "Asia/Kathmandu", "Australia/Lord_Howe", "Pacific/Apia",
          "Africa/Monrovia", "Africa/Freetown", "America/Recife", "America/Boa_Vista", "America/St_Johns",
          "<+0530>-5:30", "right/Europe/Berlin", "right/UTC", "AAA0BBB,J100,J102", "AAA0BBB,J60/0,J60/2"}) {
        const TimeZone zone(name);
        std::mt19937_64 random(7);
        std::uniform_int_distribution<std::int64_t> recent(-3'000'000'000, 6'000'000'000);
        std::uniform_int_distribution<std::int64_t> any(-60'000'000'000, 250'000'000'000);
        std::vector<std::int64_t> moments;
        for (int i = 0; i < 20'000; ++i) moments.push_back(i % 4 == 0 ? any(random) : recent(random));
        // The shortest periods between two changes of the clock: four days, and a week.
        for (const std::int64_t around : {-957'308'400, 970'974'000, 970'977'600}) {
            for (int i = -900; i < 900; ++i) moments.push_back(around + i * 1733);
        }
        // The last leap second, for zones that count leap seconds.
        for (int i = -60; i < 60; ++i) moments.push_back(1'483'228'800 + i);
        // Every half hour of a year that includes clock changes.
        for (int i = 0; i < 17'530; ++i) moments.push_back(1'767'225'600 + i * 1799);
        for (const std::int64_t seconds : moments) {
            ASSERT_EQ(DateFormatter().stringFromDate({seconds, 999'999'999}), expected(seconds))
                << name << " " << seconds;
        }
    }
}

TEST(DateFormatter, WritesEnglishAndNoMoreThanItsLength) {
    const TimeZone zone("UTC");
    ::setenv("LC_ALL", "de_DE.UTF-8", 1);
    EXPECT_EQ(DateFormatter().stringFromDate({1'794'822'014, 0}), "Nov 16, 2026 at 9:40:14 AM");
    using Limits = std::numeric_limits<std::int64_t>;
    for (const std::int64_t far :
         {Limits::min(), Limits::max(), std::int64_t{1} << 60, -(std::int64_t{1} << 60)}) {
        EXPECT_LE(DateFormatter().stringFromDate({far, 0}).size(), MediumDateTimeLength);
    }
    ::unsetenv("LC_ALL");
}

TEST(ByteCountFormatter, ChangesUnitsAndRoundsAtEveryBorder) {
    const std::pair<std::int64_t, const char*> cases[] = {
        // clang-format off
        {0, "Zero KB"}, {1, "1 byte"}, {2, "2 bytes"}, {999, "999 bytes"},
        {1000, "1 KB"}, {1499, "1 KB"}, {1500, "2 KB"}, {2500, "2 KB"},
        {2501, "3 KB"}, {12'345, "12 KB"}, {999'499, "999 KB"}, {999'999, "1000 KB"},
        {1'000'000, "1 MB"}, {1'049'999, "1 MB"}, {1'050'000, "1 MB"}, {1'150'000, "1.2 MB"},
        {1'234'567, "1.2 MB"}, {1'250'000, "1.2 MB"}, {1'350'000, "1.4 MB"}, {999'949'999, "999.9 MB"},
        {999'950'000, "1000 MB"}, {1'000'000'000, "1 GB"}, {1'005'000'000, "1 GB"}, {1'015'000'000, "1.02 GB"},
        {4'750'000'000, "4.75 GB"}, {4'100'000'000, "4.1 GB"}, {1'000'000'000'000, "1 TB"},
        {1'500'000'000'000'000, "1.5 PB"},
        {std::numeric_limits<std::int64_t>::max(), "9.22 EB"}, {-1, "-1 byte"},
        {std::numeric_limits<std::int64_t>::min(), "-9.22 EB"},
        // clang-format on
    };
    for (const auto& [count, text] : cases) {
        EXPECT_EQ(ByteCountFormatter::stringFromByteCount(count, ByteCountStyle::File), text) << count;
    }
}

TEST(FileAttributes, IsADictionaryThatOneCanPutTogether) {
    FileAttributes attributes;
    EXPECT_EQ(attributes.description(), "[:]");
    attributes.setValue(FileAttributeKey::NSFileSize, NSNumber(std::numeric_limits<std::uint64_t>::max()));
    attributes.setValue(FileAttributeKey::NSFileModificationDate, Date{0, 0});
    attributes.setValue(FileAttributeKey::NSFileImmutable, true);
    EXPECT_EQ(attributes.description(),
              "[NSFileImmutable: true, NSFileModificationDate: 1970-01-01 00:00:00 +0000, "
              "NSFileSize: 18446744073709551615]");
    EXPECT_LT(NSNumber(-1), attributes.size());
    FileAttributes copy = attributes;
    copy.removeValue(FileAttributeKey::NSFileImmutable);
    EXPECT_EQ(copy.count() + 1, attributes.count());
    EXPECT_NE(copy, attributes);
    copy.setValue(FileAttributeKey::NSFileSize, std::string("large"));
    EXPECT_DEATH((void)copy.size(), "Could not cast");
}
