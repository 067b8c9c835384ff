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

namespace {

struct BothKinds {
    int* seen;
    int calls = 0;
    void operator()(int) { *seen = ++calls; }
    void operator()(int) const { *seen = -1; }
};

struct Private {
    explicit Private(int& target)
        : _seen(&target) {}
    void operator()(int) const { *_seen = ++_calls; }

  private:
    int* _seen;
    mutable int _calls = 0;
};

} // namespace

TEST(Callback, StateOfPlainBytesLastsFromCallToCall) {
    int seen = 0;
    for (const Callback<int>& callback : {Callback<int>(BothKinds{&seen}), Callback<int>(Private(seen))}) {
        callback(0), callback(0);
        EXPECT_EQ(seen, 2);
    }
}
