// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"

#include "tests/support/child.hpp"

using namespace platform;
using namespace tonewright::test;

TEST(Console, OnlyOurLinesReachStandardOutput) {
    CapturedOutput output;
    holdsInChild([] {
        reserveStandardOutput();
        std::puts("a library's chatter");
        std::fflush(stdout);
        print(std::string_view("a\0b", 3));
        print("");
        EXPECT_EQ(printError(), 0);
    });
    EXPECT_EQ(output.take(), (Lines{std::string("a\0b", 3), ""}));
}

TEST(Console, LinesStayWholeWhenThreadsWriteTogether) {
    constexpr std::size_t Length = 100'000; // more than fits into a pipe
    int ends[2];
    ASSERT_EQ(::pipe2(ends, O_CLOEXEC), 0);
    const int kept = ::dup(STDOUT_FILENO);
    ::dup2(ends[1], STDOUT_FILENO);
    std::vector<std::thread> threads;
    for (char c = 'a'; c < 'e'; ++c) {
        threads.emplace_back([c] {
            for (int i = 0; i < 20; ++i) print(std::string(Length - 1, c));
        });
    }
    std::string text(80 * Length, '\0');
    std::size_t size = 0;
    for (ssize_t n = 0; size < text.size() && (n = ::read(ends[0], &text[size], text.size() - size)) > 0;) {
        size += static_cast<std::size_t>(n);
    }
    for (auto& thread : threads) thread.join();
    ::dup2(kept, STDOUT_FILENO);
    for (const int end : {ends[0], ends[1], kept}) ::close(end);
    for (std::size_t i = 0; i < size; i += Length) {
        ASSERT_EQ(text.find_first_not_of(text[i], i), i + Length - 1);
    }
}

TEST(Console, ClosedOrFullStandardOutputHarmsNothingAndIsKnown) {
    holdsInChild([] {
        ::dup2(::open("/dev/full", O_WRONLY), STDOUT_FILENO);
        print("lost");
        EXPECT_EQ(printError(), ENOSPC);
        ::close(STDOUT_FILENO);
        reserveStandardOutput();
        print("lost");
        EXPECT_EQ(printError(), EBADF);
        EXPECT_GT(::open("/dev/null", O_RDONLY), 2); // no file gets the descriptor of standard output
    });
}

TEST(Fatal, WritesOneLineAndAborts) {
    EXPECT_EXIT(fatal("the message"), testing::KilledBySignal(SIGABRT), "^the message\n$");
    EXPECT_DEATH((void)unwrap(std::shared_ptr<int>()),
                 "^Unexpectedly found nil while implicitly unwrapping an Optional value");
}
