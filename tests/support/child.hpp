// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Code that runs in a process of its own: as another user, with other limits, in other mounts.
#pragma once

#include <functional>
#include <grp.h>
#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tonewright::test {

/// The child's way to say that this machine does not let it try.
inline constexpr int CannotTry = 77;

/// Run `body` in a child process; give its exit status, 0 when all of its expectations held, or -1 when a
/// signal ended it.
inline int inChild(const std::function<void()>& body) {
    const pid_t child = ::fork();
    if (child == 0) {
        body();
        ::_exit(testing::Test::HasFailure() ? 1 : 0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

/// Run `body` as an ordinary user with these groups; `CannotTry` without the right to become one.
inline int inChildAs(uid_t user, gid_t group, const std::vector<gid_t>& groups,
                     const std::function<void()>& body) {
    return inChild([&] {
        if (::setgroups(groups.size(), groups.data()) != 0 || ::setgid(group) != 0 || ::setuid(user) != 0)
            ::_exit(CannotTry);
        body();
    });
}

} // namespace tonewright::test
