// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The rights that a process gives up before it handles untrusted files or runs third-party code. The calls
// apply to the whole process and cannot be undone; make them before any other thread runs.
#pragma once

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

namespace platform {

struct ResourceLimits {
    static constexpr std::uint64_t None = std::numeric_limits<std::uint64_t>::max();

    std::uint64_t processorSeconds = None; // processor time of all threads together
    // How long a thread with real-time priority may run without sleeping before it receives SIGXCPU. After
    // twice that time the process is killed.
    std::uint64_t realtimeMicroseconds = None;
    std::uint64_t memoryBytes = None; // private writable memory; not limited in builds with a sanitizer
    std::uint64_t fileBytes = None;   // size of a file that the process writes, including one in memory
    std::uint64_t descriptors = None;
};

/// Sets these limits and disables core files. Returns false if the system refuses.
[[nodiscard]] bool limitResources(const ResourceLimits& limits);

/// Makes the kernel kill this process when the thread that started it ends. Returns false if the system
/// refuses.
[[nodiscard]] bool endWithStarter();

/// Files and directories. A directory stands for everything below it. Paths that do not exist are ignored.
struct ReachableFiles {
    std::vector<std::string> readable;
    std::vector<std::string> writable; // also readable; a path that is a symbolic link is ignored
    std::vector<std::string> devices;  // also readable, writable and controllable
};

/// Which sockets a process may create.
enum class Sockets {
    None,
    Local, // those of the local family, connected to any program on this machine that the user may use
};

/// Allows only reading and writing of these files. Forbids new processes, programs and other sockets, and
/// every other access to other processes. Restrictions that the kernel does not support are left out. Returns
/// false if the kernel refuses a restriction that it supports. Files that are already open remain usable.
[[nodiscard]] bool confineTo(const ReachableFiles& files, Sockets sockets = Sockets::None);

/// The mechanisms of this kernel for confining a process.
struct ConfinementSupport {
    int landlock = 0; // version of Landlock's interface; 0 if there is none, and then all files are reachable
    bool hasSeccomp = false; // if false, all system calls are allowed
};
[[nodiscard]] ConfinementSupport confinementSupport() noexcept;

} // namespace platform
