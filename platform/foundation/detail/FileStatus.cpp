// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/FileStatus.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <sys/sysmacros.h>

namespace platform::detail {

bool FileStatus::isDirectory() const noexcept {
    return S_ISDIR(mode);
}
bool FileStatus::isLink() const noexcept {
    return S_ISLNK(mode);
}
bool FileStatus::isRegular() const noexcept {
    return S_ISREG(mode);
}
bool FileStatus::isDevice() const noexcept {
    return S_ISBLK(mode) || S_ISCHR(mode);
}

int readStatus(int directory, const char* name, int flags, FileStatus& status) noexcept {
    struct statx record; // NOLINT(cppcoreguidelines-pro-type-member-init): the kernel fills it
    if (::statx(directory, name, flags | AT_NO_AUTOMOUNT, STATX_BASIC_STATS | STATX_BTIME | STATX_MNT_ID,
                &record) != 0) {
        return errno;
    }
    status.size = record.stx_size;
    status.fileNumber = record.stx_ino;
    status.modification = {record.stx_mtime.tv_sec, record.stx_mtime.tv_nsec};
    status.creation =
        (record.stx_mask & STATX_BTIME) != 0
            ? Date{record.stx_btime.tv_sec, record.stx_btime.tv_nsec}
            : std::min(status.modification, {record.stx_ctime.tv_sec, record.stx_ctime.tv_nsec});
    status.device = ::makedev(record.stx_dev_major, record.stx_dev_minor);
    status.mount = (record.stx_mask & STATX_MNT_ID) != 0 ? record.stx_mnt_id : 0;
    status.mode = record.stx_mode;
    status.links = record.stx_nlink;
    status.owner = record.stx_uid;
    status.group = record.stx_gid;
    status.isImmutable = (record.stx_attributes & STATX_ATTR_IMMUTABLE) != 0;
    status.isAppendOnly = (record.stx_attributes & STATX_ATTR_APPEND) != 0;
    status.tellsImmutable = (record.stx_attributes_mask & STATX_ATTR_IMMUTABLE) != 0;
    return 0;
}

} // namespace platform::detail
