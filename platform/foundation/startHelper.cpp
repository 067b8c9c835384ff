// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/startHelper.hpp"

#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/Descriptor.hpp"

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <fcntl.h>
#include <sched.h>
#include <spawn.h>
#include <unistd.h>

namespace platform {
namespace {

class Preparation {
  public:
    Preparation() {
        ::posix_spawn_file_actions_init(&files);
        ::posix_spawnattr_init(&attributes);
        sigset_t signals;
        ::sigemptyset(&signals);
        ::posix_spawnattr_setsigmask(&attributes, &signals);
        ::sigfillset(&signals);
        ::posix_spawnattr_setsigdefault(&attributes, &signals);
        const sched_param normal{};
        ::posix_spawnattr_setschedpolicy(&attributes, SCHED_OTHER);
        ::posix_spawnattr_setschedparam(&attributes, &normal);
        ::posix_spawnattr_setflags(&attributes,
                                   POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSCHEDULER);
    }
    ~Preparation() {
        ::posix_spawnattr_destroy(&attributes);
        ::posix_spawn_file_actions_destroy(&files);
    }
    Preparation(const Preparation&) = delete;
    Preparation& operator=(const Preparation&) = delete;

    posix_spawn_file_actions_t files{};
    posix_spawnattr_t attributes{};
};

Error failure(const std::string& program, int error) {
    const char* reason = ::strerrordesc_np(error);
    return {"Process", error,
            program + " cannot be started (" + (reason != nullptr ? reason : "unknown error") + ")"};
}

} // namespace

Result<int> startHelper(const std::string& name, std::vector<std::string> arguments,
                        const std::vector<Inherited>& descriptors) {
    arguments.insert(arguments.begin(), Bundle::main().privateFrameworksPath() + "/" + name);
    std::vector<char*> words;
    for (std::string& argument : arguments) words.push_back(argument.data());
    words.push_back(nullptr);
    Preparation preparation;
    ::posix_spawn_file_actions_addopen(&preparation.files, STDIN_FILENO, "/dev/null", O_RDONLY, 0);
    int last = STDERR_FILENO;
    for (const Inherited& inherited : descriptors) last = std::max(last, inherited.theirs);
    std::vector<Descriptor> copies; // above all new numbers, so that giving one does not take another away
    if (std::ranges::none_of(descriptors, [](const Inherited& i) { return i.theirs == STDOUT_FILENO; })) {
        ::posix_spawn_file_actions_addopen(&preparation.files, STDOUT_FILENO, "/dev/null", O_WRONLY, 0);
    }
    for (const Inherited& inherited : descriptors) {
        copies.emplace_back(::fcntl(inherited.ours, F_DUPFD_CLOEXEC, last + 1));
        if (!copies.back()) return failure(arguments.front(), errno);
        ::posix_spawn_file_actions_adddup2(&preparation.files, copies.back().get(), inherited.theirs);
    }
    ::posix_spawn_file_actions_addclosefrom_np(&preparation.files, last + 1);
    pid_t process = 0;
    const int error = ::posix_spawn(&process, words.front(), &preparation.files, &preparation.attributes,
                                    words.data(), environ);
    if (error != 0) return failure(arguments.front(), error);
    return process;
}

} // namespace platform
