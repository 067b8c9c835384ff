// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Determines what the process may do with an item. The rights are computed if the item's status, the flags of
// its mount and the capabilities of the process determine them exactly. In all other cases (possible access
// control lists, remote or unknown file systems, security modules, devices, unmapped user and group IDs) the
// system is asked. One thread.
#pragma once

#include "platform/foundation/detail/FileStatus.hpp"

#include <vector>

namespace platform::detail {

struct Rights {
    bool isReadable = false;
    bool isWritable = false;
    bool isExecutable = false; // for a directory: searchable
};

class AccessRights {
  public:
    /// Records the present user, groups and capabilities of the process.
    AccessRights();

    /// Returns the rights to `name` in the open directory `directory`. `status` is the status of the item,
    /// with links followed.
    [[nodiscard]] Rights rightsTo(int directory, const char* name, const FileStatus& status);
    /// Returns whether the process may remove an item with the status `item` (links not followed) from a
    /// directory with the status `parent`. `rights` are the rights of the process to that directory.
    [[nodiscard]] bool mayRemove(const FileStatus& item, const FileStatus& parent,
                                 Rights rights) const noexcept;

  private:
    enum class Answer { No, Yes, Ask };
    struct Mount {
        std::uint64_t number = 0;
        bool isPlain = false; // only permissions and the mount's flags decide
        bool isReadOnly = false;
        bool forbidsExecution = false;
    };
    [[nodiscard]] const Mount* mountOf(int directory, const FileStatus& status);
    [[nodiscard]] Answer permits(const FileStatus& status, unsigned bit) const noexcept;
    [[nodiscard]] bool isMember(std::uint32_t group) const noexcept;

    std::uint32_t _user;
    std::vector<std::uint32_t> _groups; // sorted
    bool _overridesPermissions = false; // CAP_DAC_OVERRIDE
    bool _overridesReading = false;     // CAP_DAC_READ_SEARCH
    bool _overridesOwnership = false;   // CAP_FOWNER
    bool _alwaysAsks = false;
    std::uint32_t _unmapped = 65534; // the ID that the kernel reports for users and groups without a mapping
    std::vector<Mount> _mounts;
};

/// Asks the system whether the process, with its effective IDs, has the access `how` (R_OK, W_OK, X_OK or
/// several).
[[nodiscard]] bool mayAccess(int directory, const char* name, int how) noexcept;

} // namespace platform::detail
