// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/fileCopy.hpp"

#include "platform/foundation/Descriptor.hpp"
#include "platform/foundation/product.hpp"
#include "platform/foundation/random.hpp"

#include <array>
#include <cerrno>
#include <climits>
#include <fcntl.h>
#include <linux/fs.h>
#include <linux/magic.h>
#include <memory>
#include <string>
#include <string_view>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <sys/xattr.h>
#include <unistd.h>
#include <vector>

namespace platform::detail {
namespace {

constexpr std::size_t BufferSize = 256 * 1024;

// Copies by reading and writing, for file systems between which the kernel cannot copy.
int copyThroughBuffer(int from, int to) {
    const auto buffer = std::make_unique<char[]>(BufferSize);
    while (true) {
        const ssize_t length = ::read(from, buffer.get(), BufferSize);
        if (length == 0) return 0;
        if (length < 0 && errno == EINTR) continue;
        if (length < 0) return errno;
        for (ssize_t done = 0; done < length;) {
            const ssize_t written = ::write(to, buffer.get() + done, static_cast<std::size_t>(length - done));
            if (written < 0 && errno != EINTR) return errno;
            if (written > 0) done += written;
        }
    }
}

int copyBytes(int from, int to) {
    if (::ioctl(to, FICLONE, from) == 0) return 0;
    // Copies the data and leaves out the holes.
    off_t position = 0;
    while (true) {
        const off_t data = ::lseek(from, position, SEEK_DATA);
        if (data < 0 && errno == ENXIO) break; // no more data, only a hole or the end
        if (data < 0) return ::lseek(from, position, SEEK_SET) < 0 ? errno : copyThroughBuffer(from, to);
        const off_t end = ::lseek(from, data, SEEK_HOLE);
        off_t source = data;
        off_t target = data;
        while (source < end) {
            const ssize_t copied =
                ::copy_file_range(from, &source, to, &target, static_cast<std::size_t>(end - source), 0);
            if (copied < 0 && errno == EINTR) continue;
            if (copied < 0 && (errno == EXDEV || errno == EINVAL || errno == ENOSYS || errno == EOPNOTSUPP)) {
                if (::lseek(from, source, SEEK_SET) < 0 || ::lseek(to, target, SEEK_SET) < 0) return errno;
                return copyThroughBuffer(from, to);
            }
            if (copied < 0) return errno;
            if (copied == 0) break; // truncated meanwhile, or copy_file_range is not supported
        }
        if (source == data) {
            if (::lseek(from, source, SEEK_SET) < 0 || ::lseek(to, target, SEEK_SET) < 0) return errno;
            return copyThroughBuffer(from, to);
        }
        position = source;
    }
    const off_t length = ::lseek(from, 0, SEEK_END);
    if (length == 0) { // files in /proc have the length 0 and yet contents
        if (::lseek(from, 0, SEEK_SET) < 0) return errno;
        return copyThroughBuffer(from, to);
    }
    return length > position && ::ftruncate(to, length) != 0 ? errno : 0;
}

std::string temporaryName() {
    std::array<unsigned char, 8> bytes{};
    randomBytes(bytes);
    std::string name = std::string(".") + product::Name + "-";
    for (const unsigned char byte : bytes) {
        name += "0123456789abcdef"[byte >> 4U];
        name += "0123456789abcdef"[byte & 15U];
    }
    return name;
}

// Gives an unnamed file (O_TMPFILE) its name.
int giveName(int file, int to, const char* toName) {
    const std::string nameless = "/proc/self/fd/" + std::to_string(file);
    return ::linkat(AT_FDCWD, nameless.c_str(), to, toName, AT_SYMLINK_FOLLOW) == 0 ? 0 : errno;
}

// Renames a file that has a temporary name. An existing file is not replaced.
int exchangeName(int to, const std::string& temporary, const char* toName) {
    if (::renameat2(to, temporary.c_str(), to, toName, RENAME_NOREPLACE) == 0) return 0;
    if (errno != EINVAL && errno != ENOSYS) return errno;
    if (::linkat(to, temporary.c_str(), to, toName, 0) != 0) return errno;
    ::unlinkat(to, temporary.c_str(), 0);
    return 0;
}

int copyOpened(int source, const FileStatus& status, int to, const char* toName) {
    struct stat existing {};
    if (::fstatat(to, toName, &existing, AT_SYMLINK_NOFOLLOW) == 0) return EEXIST;

    std::string temporary;
    Descriptor target(::openat(to, ".", O_TMPFILE | O_WRONLY | O_CLOEXEC, 0600));
    if (!target &&
        (errno == EMFILE || errno == ENFILE || errno == ENOSPC || errno == EACCES || errno == EROFS)) {
        return errno;
    }
    if (!target) {
        temporary = temporaryName();
        target = Descriptor(::openat(to, temporary.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600));
        if (!target) return errno;
    }
    int error = copyBytes(source, target.get());
    if (error == 0) copyMetadata(source, status, target.get());
    if (error == 0) {
        error = temporary.empty() ? giveName(target.get(), to, toName) : exchangeName(to, temporary, toName);
    }
    if (error != 0 && !temporary.empty()) ::unlinkat(to, temporary.c_str(), 0);
    return error;
}

int copyRegular(int from, const char* fromName, const FileStatus& status, int to, const char* toName) {
    const Descriptor source(::openat(from, fromName, O_RDONLY | O_NOFOLLOW | O_NONBLOCK | O_CLOEXEC));
    if (!source) return errno;
    struct stat opened {};
    if (::fstat(source.get(), &opened) != 0) return errno;
    if (!S_ISREG(opened.st_mode)) return ESTALE; // replaced meanwhile
    return copyOpened(source.get(), status, to, toName);
}

int copyLink(int from, const char* fromName, int to, const char* toName) {
    std::vector<char> target(PATH_MAX + 1);
    const ssize_t length = ::readlinkat(from, fromName, target.data(), target.size() - 1);
    if (length < 0) return errno;
    target[static_cast<std::size_t>(length)] = '\0';
    return ::symlinkat(target.data(), to, toName) == 0 ? 0 : errno;
}

// Returns whether a link in /proc refers to an open file that has been deleted. A copy of such a link would
// refer to nothing.
bool namesOpenFile(int from, const char* fromName) {
    struct statfs system {};
    struct stat file {};
    return ::fstatfs(from, &system) == 0 && system.f_type == PROC_SUPER_MAGIC &&
           ::fstatat(from, fromName, &file, 0) == 0 && S_ISREG(file.st_mode) && file.st_nlink == 0;
}

} // namespace

int copyFile(int from, const char* fromName, const FileStatus& status, int to, const char* toName) {
    if (status.isRegular()) return copyRegular(from, fromName, status, to, toName);
    if (status.isLink() && namesOpenFile(from, fromName)) {
        const Descriptor file(::openat(from, fromName, O_RDONLY | O_CLOEXEC));
        FileStatus opened;
        if (!file) return errno;
        if (const int error = readStatus(file.get(), "", AT_EMPTY_PATH, opened); error != 0) return error;
        return copyOpened(file.get(), opened, to, toName);
    }
    if (status.isLink()) return copyLink(from, fromName, to, toName);
    struct stat special {};
    if (::fstatat(from, fromName, &special, AT_SYMLINK_NOFOLLOW) != 0) return errno;
    return ::mknodat(to, toName, special.st_mode & (S_IFMT | 0777U), special.st_rdev) == 0 ? 0 : errno;
}

void copyMetadata(int from, const FileStatus& status, int to) noexcept {
    // Errors are ignored: if a file system does not support an attribute, the others are still copied.
    char names[4096];
    const ssize_t length = ::flistxattr(from, names, sizeof names);
    for (ssize_t at = 0; at < length;) {
        const std::string_view name = names + at;
        at += static_cast<ssize_t>(name.size()) + 1;
        if (!name.starts_with("user.") && !name.starts_with("system.posix_acl_")) continue;
        char value[4096];
        if (const ssize_t size = ::fgetxattr(from, name.data(), value, sizeof value); size >= 0) {
            ::fsetxattr(to, name.data(), value, static_cast<std::size_t>(size), 0);
        }
    }
    // The copy belongs to the user who made it, so the set-user-ID and set-group-ID bits are kept only if the
    // original belongs to that user too.
    const mode_t kept = status.owner == ::geteuid() ? 07777U : 01777U;
    ::fchmod(to, status.mode & kept);
    const timespec times[2] = {
        {0, UTIME_OMIT}, {status.modification.seconds, static_cast<long>(status.modification.nanoseconds)}};
    ::futimens(to, times);
}

} // namespace platform::detail
