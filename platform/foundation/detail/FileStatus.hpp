// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The status of an item, as statx reports it.
#pragma once

#include "platform/foundation/Date.hpp"

#include <cstdint>
#include <sys/types.h>

namespace platform::detail {

struct FileStatus {
    std::uint64_t size = 0;
    std::uint64_t fileNumber = 0;
    Date modification;
    Date creation; // birth time; if unknown, the older of modification and status change
    std::uint64_t device = 0;
    std::uint64_t mount = 0; // 0: not reported by the kernel
    std::uint32_t mode = 0;  // type and permissions
    std::uint32_t links = 0;
    std::uint32_t owner = 0;
    std::uint32_t group = 0;
    bool isImmutable = false;
    bool isAppendOnly = false;
    bool tellsImmutable = false; // whether the file system reports isImmutable

    [[nodiscard]] bool isDirectory() const noexcept;
    [[nodiscard]] bool isLink() const noexcept;
    [[nodiscard]] bool isRegular() const noexcept;
    [[nodiscard]] bool isDevice() const noexcept;
    [[nodiscard]] bool isSame(const FileStatus& other) const noexcept {
        return device == other.device && fileNumber == other.fileNumber;
    }
};

/// Reads the status of `name` in the open directory `directory`. `flags` are those of statx
/// (AT_SYMLINK_NOFOLLOW, AT_EMPTY_PATH). Returns 0 or the error number.
[[nodiscard]] int readStatus(int directory, const char* name, int flags, FileStatus& status) noexcept;

} // namespace platform::detail
