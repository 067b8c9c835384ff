// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the process may do with an item. The answer is computed when the item's record, the flags of its mount
// and the process's own capabilities determine it exactly; in every other case (access control lists that may
// count, remote or foreign file systems, security modules, devices, identities without a mapping) the system
// is asked. One thread.
#pragma once

#include "platform/foundation/detail/FileStatus.hpp"

#include <vector>

namespace platform::detail {

struct Rights {
    bool isReadable = false;
    bool isWritable = false;
    bool isExecutable = false; // searchable, for a directory
};

class AccessRights {
  public:
    /// Records the identity of the process at this moment.
    AccessRights();

    /// Returns the rights to `name` in the open `directory`, whose status (links followed) is `status`.
    [[nodiscard]] Rights rightsTo(int directory, const char* name, const FileStatus& status);
    /// Returns whether the process may remove an item with status `item` (links not followed) from the
    /// directory with status `parent`, to which it has `rights`.
    [[nodiscard]] bool mayRemove(const FileStatus& item, const FileStatus& parent,
                                 Rights rights) const noexcept;

  private:
    enum class Answer { No, Yes, Ask };
    struct Mount {
        std::uint64_t number = 0;
        bool isPlain = false; // permissions alone decide, unless its flags forbid
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
    std::uint32_t _unmapped = 65534; // represents an identity that has no number here
    std::vector<Mount> _mounts;
};

/// Asks the system for one of R_OK, W_OK, X_OK with the process's effective identity.
[[nodiscard]] bool mayAccess(int directory, const char* name, int how) noexcept;

} // namespace platform::detail
