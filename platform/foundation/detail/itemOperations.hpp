// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Removing, copying and linking of whole trees through open directories: no path is rebuilt, no link is
// followed, and no directory is entered that is on another device, or mounted, below the item. Errors of
// reading a directory count like all others.
#pragma once

#include "platform/foundation/Error.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace platform::detail {

class DirectoryStack;

/// Called about each item, with its path from the operation's root (empty: the root itself). Functions that
/// are absent allow everything and end at the first error.
struct Questions {
    std::function<bool(const std::string& subpath)> should;
    std::function<bool(const Error& error, const std::string& subpath)> shouldProceed;
};

/// Removes the item at `path` and, for a directory, everything below it.
std::optional<Error> removeTree(const std::string& path, const Questions& questions);

/// Does the same with the item `name` of the innermost directory of `stack`, which is the innermost one again
/// afterwards. `path` names the item in errors.
std::optional<Error> removeItem(DirectoryStack& stack, const std::string& name, const std::string& path,
                                const Questions& questions);

/// Removes from the innermost directory of `stack` and from everything below it the items whose file numbers
/// are among `made`. What cannot be removed stays.
void removeMade(DirectoryStack& stack, std::vector<std::uint64_t> made);

enum class Transfer { Copy, Link };

/// Copies or links the item at `from` and, for a directory, everything below it to `to`, which must not
/// exist. A directory whose copy failed is removed again, except for what others put into it.
std::optional<Error> transferTree(const std::string& from, const std::string& to, Transfer how,
                                  const Questions& questions);

/// Returns `name` appended to a subpath.
[[nodiscard]] inline std::string joined(const std::string& prefix, const char* name) {
    return prefix.empty() ? std::string(name) : prefix + "/" + name;
}

} // namespace platform::detail
