// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Code that runs in a process of its own: as another user, with other limits, in other mounts.
#pragma once

#include "tests/support/testing.hpp"

#include <grp.h>
#include <sys/wait.h>

namespace tonewright::test {

/// The exit status by which the child says that this machine does not allow the attempt.
inline constexpr int CannotTry = 77;

/// Expects all of `body` to hold in a child process. If the machine does not allow the attempt, `body` ends
/// the child with `CannotTry`; the test is then skipped.
inline void holdsInChild(const std::function<void()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        body();
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == CannotTry) GTEST_SKIP() << "no right to do this here";
    EXPECT_EQ(status, 0);
}

/// Expects the same of `body` run as an ordinary user with these groups.
inline void holdsInChildAs(uid_t user, gid_t group, const std::vector<gid_t>& groups,
                           const std::function<void()>& body) {
    holdsInChild([&] {
        if (::setgroups(groups.size(), groups.data()) != 0 || ::setgid(group) != 0 || ::setuid(user) != 0) {
            ::_exit(CannotTry);
        }
        body();
    });
}

} // namespace tonewright::test
