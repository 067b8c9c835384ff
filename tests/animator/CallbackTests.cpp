// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/Callback.hpp"

#include <array>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>

using tonewright::Callback;

TEST(Callback, EmptyAndNullCallables) {
    Callback<int> callback;
    EXPECT_FALSE(callback);
    callback = static_cast<void (*)(int)>(nullptr);
    EXPECT_FALSE(callback);
    callback = std::function<void(int)>();
    EXPECT_FALSE(callback);
    callback = [](int) {};
    EXPECT_TRUE(callback);
    callback = nullptr;
    EXPECT_FALSE(callback);
}

TEST(Callback, SmallLargeAndMutableCallablesCopyDeeply) {
    std::string seen;
    const std::array<char, 40> large{'l', 'a', 'r', 'g', 'e'};
    const auto owned = std::make_shared<int>(7);
    Callback<int> small = [&seen](int i) { seen += std::to_string(i); };
    Callback<int> big = [&seen, large](int) { seen += large.data(); };
    Callback<int> counting = [&seen, n = 0, owned](int) mutable { seen += std::to_string(++n); };
    Callback<int> copy = counting;
    EXPECT_EQ(owned.use_count(), 3);
    small(5), big(0), counting(0), counting(0), copy(0);
    EXPECT_EQ(seen, "5large121");
    copy = std::move(counting);
    copy(0);
    EXPECT_EQ(seen, "5large1213");
    EXPECT_EQ(owned.use_count(), 2);
    copy = nullptr;
    EXPECT_EQ(owned.use_count(), 1);
}

TEST(Callback, SurvivesItsOwnReplacementAndTheOwnersEnd) {
    std::string seen;
    auto callback = std::make_unique<Callback<>>();
    const auto token = std::make_shared<int>(1);
    const std::weak_ptr<int> watch = token;
    // Captures are read after the replacement, by a small and by a large callable.
    *callback = [&seen, &callback] {
        *callback = [] {};
        seen += "small";
    };
    (*callback)();
    *callback = [&seen, &callback, kept = std::make_shared<int>(2), watch] {
        callback.reset();
        seen += std::to_string(*kept) + (watch.expired() ? "gone" : "there");
    };
    (*callback)();
    EXPECT_EQ(seen, "small2there");
    EXPECT_EQ(callback, nullptr);
}

TEST(Callback, MayCallItself) {
    Callback<int> callback;
    int deepest = 0;
    callback = [&, kept = std::string(40, 'x')](int depth) {
        deepest = std::max(deepest, depth);
        if (depth == 1) callback = Callback<int>(callback);
        if (depth < 3) callback(depth + 1);
        EXPECT_EQ(kept.size(), 40U);
    };
    callback(0);
    EXPECT_EQ(deepest, 3);
}
