// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs code in a child process: as another user, with other limits, or with other mounts.
#pragma once

#include "tests/support/testing.hpp"

#include <grp.h>
#include <sys/mount.h>

namespace tonewright::test {

/// The child's exit status if this machine does not allow the attempt.
inline constexpr int CannotTry = 77;

/// Expects `body` to pass in a child process. If the machine does not allow the attempt, `body` exits with
/// `CannotTry`, and the test is skipped.
inline void holdsInChild(const std::function<void()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        body();
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (WIFEXITED(status) && WEXITSTATUS(status) == CannotTry) {
        GTEST_SKIP() << "this machine does not allow it";
    }
    EXPECT_EQ(status, 0);
}

/// Like holdsInChild, but runs `body` as an ordinary user with these groups.
inline void holdsInChildAs(uid_t user, gid_t group, const std::vector<gid_t>& groups,
                           const std::function<void()>& body) {
    holdsInChild([&] {
        if (::setgroups(groups.size(), groups.data()) != 0 || ::setgid(group) != 0 || ::setuid(user) != 0) {
            ::_exit(CannotTry);
        }
        body();
    });
}

/// Mounts a file system that only this process sees, in a child of `holdsInChild`. Exits with `CannotTry` if
/// mounting is not allowed.
inline void mountInChild(const char* what, const std::string& where, const char* type, unsigned long flags,
                         const char* options = nullptr) {
    if (::unshare(CLONE_NEWNS) != 0 || ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
        ::mount(what, where.c_str(), type, flags, options) != 0) {
        ::_exit(CannotTry);
    }
}

} // namespace tonewright::test
