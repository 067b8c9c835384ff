// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/PathLocation.hpp"

#include <cerrno>
#include <climits>
#include <fcntl.h>

namespace platform::detail {
namespace {

constexpr std::size_t LongestPiece = PATH_MAX - 1;

} // namespace

PathLocation::PathLocation(std::string_view path) {
    if (path.find('\0') != std::string_view::npos) {
        _error = ENOENT; // a C string would end at the NUL and name another file
        return;
    }
    while (path.size() > LongestPiece) {
        const std::size_t end = path.rfind('/', LongestPiece);
        if (end == std::string_view::npos) {
            _error = ENAMETOOLONG;
            return;
        }
        const std::string piece(path.substr(0, end == 0 ? 1 : end));
        Descriptor next(::openat(directory(), piece.c_str(), O_PATH | O_DIRECTORY | O_CLOEXEC));
        if (!next) {
            _error = errno;
            return;
        }
        _directory = std::move(next);
        path.remove_prefix(end);
        while (!path.empty() && path.front() == '/') path.remove_prefix(1);
        if (path.empty()) path = ".";
    }
    _rest = path;
}

int PathLocation::directory() const noexcept {
    return _directory ? _directory.get() : AT_FDCWD;
}

ParentAndName splitPath(std::string_view path) {
    while (path.size() > 1 && path.back() == '/') path.remove_suffix(1);
    const std::size_t slash = path.rfind('/');
    if (slash == std::string_view::npos) return {".", std::string(path)};
    std::string_view parent = path.substr(0, slash);
    while (!parent.empty() && parent.back() == '/') parent.remove_suffix(1);
    return {parent.empty() ? "/" : std::string(parent), std::string(path.substr(slash + 1))};
}

Descriptor openDirectory(std::string_view path, int& error) {
    const PathLocation location(path);
    error = location.error();
    if (error != 0) return {};
    Descriptor opened(::openat(location.directory(), location.rest(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    if (!opened) error = errno;
    return opened;
}

} // namespace platform::detail
