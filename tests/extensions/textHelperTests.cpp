// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/dispatch/RunLoop.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Extensions/safeprint.hpp"
#include "shared/Common/Extensions/uniqueName.hpp"
#include "tests/support/testing.hpp"

namespace {

using namespace tonewright;
using namespace std::string_literals;

TEST(UniqueName, PutsAPrefixInFrontAlsoAnEmptyOne) {
    const std::string first = uniqueName("loop");
    const std::string second = uniqueName("loop");
    EXPECT_NE(first, second);
    EXPECT_TRUE(first.starts_with("loop-"));
    EXPECT_EQ(uniqueName("").size(), uniqueName(std::nullopt).size() + 1);
    EXPECT_EQ(uniqueName("").front(), '-');
    EXPECT_NE(uniqueName(std::nullopt).front(), '-');
}

TEST(Safeprint, WritesLaterInTheOrderOfTheCalls) {
    bool done = false;
    ::testing::internal::CaptureStdout();
    safeprint("one");
    debugprint("two\0three"s);
    std::thread([&] {
        safeprint("");
        platform::DispatchQueue::main().async([&] { done = true; });
    }).join();
    platform::print("at once");
    EXPECT_TRUE(platform::RunLoop::current().runUntil([&] { return done; }, 10));
    EXPECT_EQ(::testing::internal::GetCapturedStdout(), "at once\none\ntwo\0three\n\n"s);
}

} // namespace
