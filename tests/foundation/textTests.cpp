// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/checked.hpp"
#include "platform/foundation/random.hpp"
#include "tests/support/testing.hpp"

using namespace platform;

TEST(Random, DrawsEveryNumberOfAClosedRange) {
    std::set<std::int64_t> seen;
    for (int i = 0; i < 5000; ++i) seen.insert(randomInteger(1, 80));
    EXPECT_EQ(seen.size(), 80U);
    EXPECT_EQ(*seen.begin(), 1);
    EXPECT_EQ(*seen.rbegin(), 80);
    EXPECT_DEATH((void)randomInteger(2, 1), "lowerBound");
}

TEST(Checked, OverflowIsFatal) {
    constexpr auto Most = std::numeric_limits<std::int64_t>::max();
    EXPECT_EQ(checkedAdd<std::int64_t>(Most - 1, 1), Most);
    EXPECT_DEATH((void)checkedAdd<std::int64_t>(Most, 1), "overflow");
    EXPECT_DEATH((void)checkedSubtract<std::int64_t>(-2, Most), "overflow");
    EXPECT_DEATH((void)checkedMultiply<std::int64_t>(Most, 2), "overflow");
    EXPECT_EQ(checkedInteger(-0x1p63), std::numeric_limits<std::int64_t>::min());
    EXPECT_DEATH((void)checkedInteger(0x1p63), "64-bit");
    EXPECT_DEATH((void)checkedInteger(std::nan("")), "64-bit");
}
