// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/AccessRights.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <linux/capability.h>
#include <linux/magic.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/syscall.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace platform::detail {
namespace {

constexpr unsigned Read = 4;
constexpr unsigned Write = 2;
constexpr unsigned Execute = 1;

std::uint64_t effectiveCapabilities() {
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct data[2] = {};
    if (::syscall(SYS_capget, &header, data) != 0) return 0;
    return data[0].effective | std::uint64_t{data[1].effective} << 32U;
}

bool has(std::uint64_t capabilities, unsigned capability) {
    return (capabilities >> capability & 1U) != 0;
}

// Returns whether a security module that labels files takes part in every access decision.
bool hasLabellingModule() {
    struct stat status {};
    return ::stat("/sys/fs/selinux/enforce", &status) == 0 || ::stat("/sys/fs/smackfs/load2", &status) == 0;
}

// Returns whether the file system is known to decide by permissions alone.
bool addsNoRules(long type) {
    constexpr long XfsMagic = 0x58465342;
    switch (type) {
    case EXT4_SUPER_MAGIC:
    case BTRFS_SUPER_MAGIC:
    case F2FS_SUPER_MAGIC:
    case TMPFS_MAGIC:
    case XfsMagic:
        return true;
    default:
        return false;
    }
}

} // namespace

bool mayAccess(int directory, const char* name, int how) noexcept {
    return ::faccessat(directory, name, how, AT_EACCESS) == 0;
}

AccessRights::AccessRights()
    : _user(::geteuid()) {
    const int count = ::getgroups(0, nullptr);
    _groups.resize(count > 0 ? static_cast<std::size_t>(count) : 0);
    const int read = ::getgroups(count, _groups.data());
    _groups.resize(read > 0 ? static_cast<std::size_t>(read) : 0);
    _groups.push_back(::getegid());
    std::sort(_groups.begin(), _groups.end());
    const std::uint64_t capabilities = effectiveCapabilities();
    _overridesPermissions = has(capabilities, CAP_DAC_OVERRIDE);
    _overridesReading = has(capabilities, CAP_DAC_READ_SEARCH);
    _overridesOwnership = has(capabilities, CAP_FOWNER);
    _alwaysAsks = hasLabellingModule();
}

bool AccessRights::isMember(std::uint32_t group) const noexcept {
    return std::binary_search(_groups.begin(), _groups.end(), group);
}

// Returns the mount of an item, or null if it is unknown. The flags of each mount are read only once, through
// an open directory on it.
const AccessRights::Mount* AccessRights::mountOf(int directory, const FileStatus& status) {
    if (status.mount == 0) return nullptr;
    for (const Mount& mount : _mounts) {
        if (mount.number == status.mount) return &mount;
    }
    FileStatus own;
    if (directory < 0 || readStatus(directory, "", AT_EMPTY_PATH, own) != 0 || own.mount != status.mount) {
        return nullptr;
    }
    struct statfs system {};
    if (::fstatfs(directory, &system) != 0) return nullptr;
    const auto flags = static_cast<unsigned long>(system.f_flags);
    _mounts.push_back(
        {status.mount, addsNoRules(system.f_type), (flags & ST_RDONLY) != 0, (flags & ST_NOEXEC) != 0});
    return &_mounts.back();
}

// Decides from permission bits and capabilities, in the same order as the kernel. For the owner, only the
// owner's bits count. For everybody else there may be an access control list, unless all group bits are zero.
// Such a list cannot grant more than the group bits or the bits of others do.
AccessRights::Answer AccessRights::permits(const FileStatus& status, unsigned bit) const noexcept {
    if (_overridesPermissions &&
        (bit != Execute || status.isDirectory() || (status.mode & (S_IXUSR | S_IXGRP | S_IXOTH)) != 0)) {
        return Answer::Yes;
    }
    if (_overridesReading && (bit == Read || (bit == Execute && status.isDirectory()))) return Answer::Yes;
    if (status.owner == _user) return (status.mode >> 6U & bit) != 0 ? Answer::Yes : Answer::No;
    const bool group = (status.mode >> 3U & bit) != 0;
    const bool others = (status.mode & bit) != 0;
    if ((status.mode & S_IRWXG) != 0) return group || others ? Answer::Ask : Answer::No;
    return (isMember(status.group) ? group : others) ? Answer::Yes : Answer::No;
}

Rights AccessRights::rightsTo(int directory, const char* name, const FileStatus& status) {
    Answer read = Answer::Ask;
    Answer write = Answer::Ask;
    Answer execute = Answer::Ask;
    const Mount* mount = _alwaysAsks ? nullptr : mountOf(directory, status);
    if (mount != nullptr && mount->isPlain && !status.isDevice() && status.owner != _unmapped &&
        status.group != _unmapped) {
        read = permits(status, Read);
        write = permits(status, Write);
        execute = permits(status, Execute);
        const bool holdsData = status.isRegular() || status.isDirectory();
        if (mount->isReadOnly && holdsData) {
            write = Answer::No;
        } else if (status.isImmutable) {
            write = Answer::No;
        } else if (!status.tellsImmutable && write == Answer::Yes) {
            write = Answer::Ask;
        }
        if (mount->forbidsExecution && status.isRegular()) execute = Answer::No;
    }
    // If both rights are unknown, one call asks for both. Usually the answer is yes.
    if (read == Answer::Ask && execute == Answer::Ask && mayAccess(directory, name, R_OK | X_OK)) {
        read = execute = Answer::Yes;
    }
    const auto settle = [&](Answer answer, int how) {
        return answer == Answer::Ask ? mayAccess(directory, name, how) : answer == Answer::Yes;
    };
    return {settle(read, R_OK), settle(write, W_OK), settle(execute, X_OK)};
}

bool AccessRights::mayRemove(const FileStatus& item, const FileStatus& parent, Rights rights) const noexcept {
    if (!rights.isWritable || !rights.isExecutable) return false;
    if ((parent.mode & S_ISVTX) == 0) return true;
    return item.owner == _user || parent.owner == _user || _overridesOwnership;
}

} // namespace platform::detail
