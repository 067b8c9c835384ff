// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"

#include <cstdio>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <string>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace platform;

namespace {

// Runs `body` in a child whose standard output is a pipe, and gives what came through.
template <class Body>
std::string outputOf(Body body) {
    int ends[2];
    EXPECT_EQ(::pipe(ends), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(ends[1], STDOUT_FILENO);
        ::close(ends[0]);
        ::close(ends[1]);
        body();
        ::_exit(0);
    }
    ::close(ends[1]);
    std::string text;
    char buffer[4096];
    for (ssize_t n = 0; (n = ::read(ends[0], buffer, sizeof buffer)) > 0;)
        text.append(buffer, static_cast<std::size_t>(n));
    ::close(ends[0]);
    int status = 0;
    ::waitpid(child, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0);
    return text;
}

} // namespace

TEST(Console, OnlyOurLinesReachStandardOutput) {
    const std::string text = outputOf([] {
        reserveStandardOutput();
        std::puts("a library's chatter");
        std::fflush(stdout);
        print(std::string_view("a\0b", 3));
        print("");
    });
    EXPECT_EQ(text, std::string("a\0b\n\n", 5));
}

TEST(Console, LinesStayWholeWhenThreadsWriteTogether) {
    const std::string text = outputOf([] {
        std::vector<std::thread> threads;
        for (char c = 'a'; c < 'e'; ++c)
            threads.emplace_back([c] {
                for (int i = 0; i < 200; ++i) print(std::string(3000, c));
            });
        for (auto& thread : threads) thread.join();
    });
    ASSERT_EQ(text.size(), 800U * 3001U);
    for (std::size_t i = 0; i < text.size(); i += 3001) {
        EXPECT_EQ(text.find_first_not_of(text[i], i), i + 3000);
        EXPECT_EQ(text[i + 3000], '\n');
    }
}

TEST(Console, ClosedStandardOutputHarmsNothing) {
    const std::string text = outputOf([] {
        ::close(STDOUT_FILENO);
        reserveStandardOutput();
        print("lost");
        if (::open("/dev/null", O_RDONLY) <= 2) ::_exit(1);
    });
    EXPECT_EQ(text, "");
}

TEST(Fatal, WritesOneLineAndAborts) {
    EXPECT_EXIT(fatal("the message"), testing::KilledBySignal(SIGABRT), "^the message\n$");
    EXPECT_DEATH((void)unwrap(std::shared_ptr<int>()),
                 "^Unexpectedly found nil while implicitly unwrapping an Optional value");
}
