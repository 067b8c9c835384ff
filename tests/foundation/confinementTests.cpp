// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests what a confined process can still do. Each case runs in a process of its own.
#include "platform/foundation/confinement.hpp"
#include "tests/support/testing.hpp"

#include <cerrno>
#include <csignal>
#include <sys/ioctl.h>
#include <sys/socket.h>

namespace {

using namespace platform;

// Exits with the number of the first check that fails, or with 0.
[[noreturn]] void confineAndTry(const tonewright::test::Scratch& place) {
    const ConfinementSupport support = confinementSupport();
    if (!confineTo({.readable = {place / "readable", place / "single", "/nowhere"},
                    .writable = {place / "writable", place / "link"},
                    .devices = {}})) {
        ::_exit(1);
    }
    const auto opens = [&](const char* name, int flags) {
        return ::open((place / name).c_str(), flags, 0600) >= 0;
    };
    if (!opens("readable/file", O_RDONLY) || !opens("single", O_RDONLY)) ::_exit(2);
    if (!opens("writable/new", O_CREAT | O_TRUNC | O_RDWR)) ::_exit(3);
    if (support.landlock > 0) {
        if (opens("other/file", O_RDONLY)) ::_exit(4);
        if (opens("readable/file", O_WRONLY) || opens("single", O_WRONLY)) ::_exit(5);
        if (opens("readable/new", O_CREAT | O_WRONLY)) ::_exit(6);
    }
    if (support.hasSeccomp) {
        if (opens("readable/file", O_RDONLY | O_TRUNC | O_CLOEXEC) || errno != EPERM) ::_exit(7);
        if (::chmod((place / "other/file").c_str(), 0666) == 0) ::_exit(8);
        if (::socket(AF_UNIX, SOCK_STREAM, 0) >= 0) ::_exit(9);
        if (::fork() >= 0) ::_exit(10);
        if (::kill(::getppid(), 0) == 0) ::_exit(11);
        if (::fcntl(STDERR_FILENO, F_SETOWN, ::getppid()) == 0)
            ::_exit(12); // would send a signal when the file becomes ready
        if (::fcntl(STDERR_FILENO, F_GETFD) < 0) ::_exit(13);
        if (::ioctl(STDERR_FILENO, TIOCSTI, "x") == 0 || errno != EPERM) ::_exit(14);
    }
    int step = 15;
    std::thread([&step] { step = 0; }).join();
    ::_exit(step);
}

TEST(Confinement, LeavesTheNamedFilesAndThreads) {
    const tonewright::test::Scratch scratch;
    for (const char* name : {"readable/file", "single", "other/file"}) scratch.file(name);
    scratch.folder("writable");
    std::filesystem::create_symlink(scratch / "other", scratch / "link");
    EXPECT_EXIT(confineAndTry(scratch), ::testing::ExitedWithCode(0), "");
}

TEST(Confinement, LimitsHold) {
    EXPECT_EXIT(
        {
            const bool isLimited = limitResources(
                {.processorSeconds = 1, .memoryBytes = 1U << 30U, .fileBytes = 4096, .descriptors = 64});
            rlimit core{};
            ::getrlimit(RLIMIT_CORE, &core);
            if (!isLimited || core.rlim_max != 0) ::_exit(1);
            while (::getppid() >= 0) {
            }
        },
        ::testing::KilledBySignal(SIGXCPU), "");
}

} // namespace
