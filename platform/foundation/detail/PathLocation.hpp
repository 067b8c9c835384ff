// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Resolves a path of any length to an open directory and a remaining path. System calls accept at most
// PATH_MAX bytes, so longer paths are opened piece by piece.
#pragma once

#include "platform/foundation/Descriptor.hpp"

#include <string>
#include <string_view>

namespace platform::detail {

class PathLocation {
  public:
    /// Resolves `path`. If one of its directories cannot be opened, `error` returns the reason.
    explicit PathLocation(std::string_view path);

    /// Returns the directory to which `rest` is relative: an open descriptor, or AT_FDCWD.
    [[nodiscard]] int directory() const noexcept;
    [[nodiscard]] const char* rest() const noexcept { return _rest.c_str(); }
    /// Returns 0, or the error number if the path could not be resolved.
    [[nodiscard]] int error() const noexcept { return _error; }

  private:
    Descriptor _directory;
    std::string _rest;
    int _error = 0;
};

/// A path split before its last component: "/a/b/" is split into "/a" and "b", "b" into "." and "b".
struct ParentAndName {
    std::string parent;
    std::string name; // empty for "/" and the empty path
};
[[nodiscard]] ParentAndName splitPath(std::string_view path);

/// Opens the directory at `path`, which may have any length. Returns its descriptor and sets `error` to 0, or
/// returns no descriptor and sets `error` to the error number.
[[nodiscard]] Descriptor openDirectory(std::string_view path, int& error);

} // namespace platform::detail
