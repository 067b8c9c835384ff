// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Removes, copies and links whole trees through open directories: nothing is accessed by its path, no link is
// followed, and no directory below the item is entered that is on another device or mount. A directory that
// cannot be read is an error like any other.
#pragma once

#include "platform/foundation/Error.hpp"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace platform::detail {

class DirectoryStack;

/// Functions that are called for each item with its path relative to the operation's root, or with an empty
/// path for the root itself. Without `should`, everything is allowed; without `shouldProceed`, the first
/// error ends the operation.
struct Questions {
    std::function<bool(const std::string& subpath)> should;
    std::function<bool(const Error& error, const std::string& subpath)> shouldProceed;
};

/// Removes the item at `path` and, for a directory, everything below it.
std::optional<Error> removeTree(const std::string& path, const Questions& questions);

/// Removes the item `name` of the innermost directory of `stack` and, for a directory, everything below it.
/// Afterwards the stack has its previous depth again. `path` is used in error texts.
std::optional<Error> removeItem(DirectoryStack& stack, const std::string& name, const std::string& path,
                                const Questions& questions);

/// Removes all items below the innermost directory of `stack` whose file numbers are in `made`. Items that
/// cannot be removed are left.
void removeMade(DirectoryStack& stack, std::vector<std::uint64_t> made);

enum class Transfer { Copy, Link };

/// Copies or links the item at `from` and, for a directory, everything below it to `to`, which must not
/// exist. If that fails, removes what it has created, but nothing that other programs have added.
std::optional<Error> transferTree(const std::string& from, const std::string& to, Transfer how,
                                  const Questions& questions);

/// Returns `name` appended to the subpath `prefix`.
[[nodiscard]] inline std::string joined(const std::string& prefix, const char* name) {
    return prefix.empty() ? std::string(name) : prefix + "/" + name;
}

} // namespace platform::detail
