// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benches/files/flatScan.hpp"

#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace {

constexpr std::size_t BufferSize = 128 * 1024;

class Scan {
  public:
    explicit Scan(FlatTree& tree)
        : _tree(tree)
        , _user(::geteuid())
        , _group(::getegid()) {}

    // Copies all entries of a folder out of the buffer before descending, so that one buffer serves every
    // level.
    void folder(int directory, std::uint32_t parent, std::uint16_t depth, bool mayRemove) {
        std::vector<char> entries;
        while (true) {
            const ssize_t length = ::getdents64(directory, _buffer.get(), BufferSize);
            if (length <= 0) break;
            entries.insert(entries.end(), _buffer.get(), _buffer.get() + length);
        }
        for (std::size_t at = 0; at < entries.size();) {
            const auto* entry = reinterpret_cast<const dirent64*>(entries.data() + at);
            at += entry->d_reclen;
            const char* name = entry->d_name;
            if (name[0] == '.' && (name[1] == '\0' || (name[1] == '.' && name[2] == '\0'))) continue;
            item(directory, name, parent, depth, mayRemove);
        }
    }

  private:
    void item(int directory, const char* name, std::uint32_t parent, std::uint16_t depth, bool mayRemove) {
        struct statx status;
        if (::statx(directory, name, AT_SYMLINK_NOFOLLOW, STATX_BASIC_STATS | STATX_BTIME, &status) != 0) {
            return;
        }
        const std::size_t length = std::strlen(name);
        const auto number = static_cast<std::uint32_t>(_tree.records.size());
        const std::uint8_t rights = rightsTo(status);
        _tree.records.push_back(
            {status.stx_size, status.stx_ino, status.stx_mtime.tv_sec, status.stx_btime.tv_sec,
             status.stx_mtime.tv_nsec, status.stx_btime.tv_nsec, status.stx_mode, status.stx_uid,
             status.stx_gid, status.stx_nlink, parent, static_cast<std::uint32_t>(_tree.names.size()),
             static_cast<std::uint16_t>(length), depth,
             static_cast<std::uint8_t>(rights | (mayRemove ? 8U : 0U)), S_ISDIR(status.stx_mode)});
        _tree.names.insert(_tree.names.end(), name, name + length);
        if (!S_ISDIR(status.stx_mode)) return;
        const int inner = ::openat(directory, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
        if (inner < 0) return;
        folder(inner, number, static_cast<std::uint16_t>(depth + 1), (rights & 6U) == 6U);
        ::close(inner);
    }

    std::uint8_t rightsTo(const struct statx& status) const {
        const unsigned mode = status.stx_mode;
        if (_user == 0) return static_cast<std::uint8_t>(S_ISDIR(mode) || (mode & 0111U) != 0 ? 7U : 3U);
        const unsigned bits = (status.stx_uid == _user    ? mode >> 6U
                               : status.stx_gid == _group ? mode >> 3U
                                                          : mode) &
                              7U;
        return static_cast<std::uint8_t>((bits & 4U) >> 2U | (bits & 2U) | (bits & 1U) << 2U);
    }

    FlatTree& _tree;
    unsigned _user;
    unsigned _group;
    std::unique_ptr<char[]> _buffer = std::make_unique<char[]>(BufferSize);
};

} // namespace

FlatTree flatScan(const char* root) {
    FlatTree tree;
    const int directory = ::open(root, O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (directory < 0) return tree;
    Scan(tree).folder(directory, 0, 0, true);
    ::close(directory);
    return tree;
}
