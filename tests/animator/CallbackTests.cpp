// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/detail/Callback.hpp"
#include "tests/support/testing.hpp"

using tonewright::Callback;

TEST(Callback, NullCallablesAreNone) {
    EXPECT_FALSE(Callback<int>(static_cast<void (*)(int)>(nullptr)));
    EXPECT_FALSE(Callback<int>(std::function<void(int)>()));
}

TEST(Callback, SmallLargeAndMutableCallablesCopyDeeply) {
    std::string seen;
    const std::array<char, 40> large{'l', 'a', 'r', 'g', 'e'};
    const auto owned = std::make_shared<int>(7);
    Callback<int> small = [&seen](int i) { seen += std::to_string(i); };
    Callback<int> big = [&seen, large](int) { seen += large.data(); };
    Callback<int> counting = [&seen, n = 0, owned](int) mutable { seen += std::to_string(++n); };
    Callback<int> plain = [&seen, n = 0](int) mutable { seen += std::to_string(++n); };
    Callback<int> copy = counting;
    EXPECT_EQ(owned.use_count(), 3);
    small(5), big(0), plain(0), plain(0), counting(0), counting(0), copy(0);
    EXPECT_EQ(seen, "5large12121");
    copy = std::move(counting);
    copy(0);
    EXPECT_EQ(seen, "5large121213");
    EXPECT_EQ(owned.use_count(), 2);
    copy = nullptr;
    EXPECT_EQ(owned.use_count(), 1);
}
