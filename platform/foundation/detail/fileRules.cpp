// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/fileRules.hpp"

#include "platform/foundation/Descriptor.hpp"

#include <algorithm>
#include <cstddef>
#include <fcntl.h>
#include <linux/landlock.h>
#include <string>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>
#include <vector>

namespace platform {
namespace {

// Parts of the kernel's interface that older kernel headers lack.
struct Rules {
    std::uint64_t files, ports, scopes; // accesses that are refused unless a rule allows them
};
constexpr std::uint64_t Move = 1U << 13U, Truncate = 1U << 14U, ControlDevice = 1U << 15U;
constexpr std::uint64_t AllPorts = 3;                     // binding and connecting
constexpr std::uint64_t AbstractSockets = 1, Signals = 2; // those of processes outside, and to them

// Everything that Landlock controls in this version of its interface.
Rules allRules(int version, Sockets sockets) {
    Rules rules{.files = (LANDLOCK_ACCESS_FS_MAKE_SYM << 1U) - 1, .ports = 0, .scopes = 0};
    if (version >= 2) rules.files |= Move;
    if (version >= FirstLandlockThatTruncates) rules.files |= Truncate;
    if (version >= 4) rules.ports = AllPorts;
    if (version >= 5) rules.files |= ControlDevice;
    if (version >= 6) rules.scopes = Signals;
    // Xlib connects to the abstract socket of the server, and does not try the other one if that is refused.
    if (version >= 6 && sockets == Sockets::None) rules.scopes |= AbstractSockets;
    return rules;
}

constexpr std::uint64_t Reading = LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_READ_DIR;
constexpr std::uint64_t Writing = LANDLOCK_ACCESS_FS_WRITE_FILE | LANDLOCK_ACCESS_FS_REMOVE_DIR |
                                  LANDLOCK_ACCESS_FS_REMOVE_FILE | LANDLOCK_ACCESS_FS_MAKE_DIR |
                                  LANDLOCK_ACCESS_FS_MAKE_REG | LANDLOCK_ACCESS_FS_MAKE_SYM | Move | Truncate;
constexpr std::uint64_t OfFiles =
    LANDLOCK_ACCESS_FS_READ_FILE | LANDLOCK_ACCESS_FS_WRITE_FILE | Truncate | ControlDevice;
constexpr std::uint64_t Controlling = Reading | LANDLOCK_ACCESS_FS_WRITE_FILE | ControlDevice;

class Ruleset {
  public:
    Ruleset(int version, Sockets sockets)
        : _all(allRules(version, sockets))
        , _rules(static_cast<int>(::syscall(SYS_landlock_create_ruleset, &_all, size(version), 0))) {}

    [[nodiscard]] bool allow(const std::vector<std::string>& places, std::uint64_t access, int flags = 0) {
        return _rules && std::ranges::all_of(
                             places, [&](const std::string& place) { return allow(place, access, flags); });
    }
    [[nodiscard]] bool hold() {
        return _rules && ::syscall(SYS_landlock_restrict_self, _rules.get(), 0) == 0;
    }

  private:
    static std::size_t size(int version) {
        return version >= 6 ? sizeof(Rules) : version >= 4 ? offsetof(Rules, scopes) : offsetof(Rules, ports);
    }
    bool allow(const std::string& place, std::uint64_t access, int flags) {
        const Descriptor file(::open(place.c_str(), O_PATH | O_CLOEXEC | flags));
        struct stat status {};
        if (!file || ::fstat(file.get(), &status) != 0 || S_ISLNK(status.st_mode)) return true;
        const std::uint64_t possible = S_ISDIR(status.st_mode) ? access : access & OfFiles;
        const landlock_path_beneath_attr rule = {.allowed_access = possible & _all.files,
                                                 .parent_fd = file.get()};
        return ::syscall(SYS_landlock_add_rule, _rules.get(), LANDLOCK_RULE_PATH_BENEATH, &rule, 0) == 0;
    }

    const Rules _all;
    const Descriptor _rules;
};

} // namespace

int landlockVersion() noexcept {
    const long version = ::syscall(SYS_landlock_create_ruleset, nullptr, 0, LANDLOCK_CREATE_RULESET_VERSION);
    return version < 1 ? 0 : static_cast<int>(version); // an older kernel, or Landlock is disabled
}

bool allowFiles(const ReachableFiles& files, Sockets sockets) {
    const int version = landlockVersion();
    if (version == 0) return true;
    Ruleset rules(version, sockets);
    return rules.allow(files.readable, Reading) &&
           rules.allow(files.writable, Reading | Writing, O_NOFOLLOW) &&
           rules.allow(files.devices, Controlling) && rules.hold();
}

} // namespace platform
