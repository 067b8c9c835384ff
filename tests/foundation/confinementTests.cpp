// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What a process can still do after it has been confined; each case is a process of its own.
#include "platform/foundation/confinement.hpp"
#include "tests/support/testing.hpp"

#include <linux/landlock.h>
#include <sys/socket.h>
#include <sys/syscall.h>

namespace {

using namespace platform;

bool kernelHasLandlock() {
    return ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION) > 0;
}

// Exits with the number of the first expectation that does not hold, or 0.
[[noreturn]] void confineAndTry(const std::string& readable, const std::string& other) {
    if (!confineToReading({readable, "/nowhere"})) ::_exit(1);
    if (::open((readable + "/file").c_str(), O_RDONLY) < 0) ::_exit(2);
    if (kernelHasLandlock()) {
        if (::open((other + "/file").c_str(), O_RDONLY) >= 0) ::_exit(3);
        if (::open((readable + "/file").c_str(), O_WRONLY) >= 0) ::_exit(4);
        if (::open((readable + "/new").c_str(), O_CREAT | O_WRONLY, 0600) >= 0) ::_exit(5);
    }
    if (::socket(AF_UNIX, SOCK_STREAM, 0) >= 0) ::_exit(6);
    if (::fork() >= 0) ::_exit(7);
    if (::kill(::getppid(), 0) == 0) ::_exit(8);
    int step = 9;
    std::thread([&step] { step = 0; }).join();
    ::_exit(step);
}

TEST(Confinement, LeavesReadingInTheNamedPlacesAndThreads) {
    const tonewright::test::Scratch scratch;
    scratch.file("readable/file");
    scratch.file("other/file");
    EXPECT_EXIT(confineAndTry(scratch / "readable", scratch / "other"), ::testing::ExitedWithCode(0), "");
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
