// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A path of any length as an open directory and the remaining path. The system takes at most PATH_MAX bytes
// at a time; longer paths are walked piece by piece.
#pragma once

#include "platform/foundation/Descriptor.hpp"

#include <string>
#include <string_view>

namespace platform::detail {

class PathLocation {
  public:
    /// Resolves `path`. If a directory on the way cannot be opened, `error` tells why.
    explicit PathLocation(std::string_view path);

    /// Returns the directory to which `rest` is relative: an open one, or AT_FDCWD.
    [[nodiscard]] int directory() const noexcept;
    [[nodiscard]] const char* rest() const noexcept { return _rest.c_str(); }
    /// Returns 0, or the error number if there is no such place.
    [[nodiscard]] int error() const noexcept { return _error; }

  private:
    Descriptor _directory;
    std::string _rest;
    int _error = 0;
};

/// A path split before its last component: "/a/b/" into "/a" and "b", "b" into "." and "b".
struct ParentAndName {
    std::string parent;
    std::string name; // empty for "/" and the empty path
};
[[nodiscard]] ParentAndName splitPath(std::string_view path);

/// Opens the directory at `path`, of any length. Returns a descriptor, or sets `error`.
[[nodiscard]] Descriptor openDirectory(std::string_view path, int& error);

} // namespace platform::detail
