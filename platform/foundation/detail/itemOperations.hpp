// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Removing, copying and linking of whole trees by open directories: no path is rebuilt, no link is followed.
// Private to platform/foundation.
#pragma once

#include "platform/foundation/Error.hpp"

#include <functional>
#include <optional>
#include <string>

namespace platform::detail {

/// Who is asked about each item, by its path from the operation's root (empty: the root itself). Functions
/// that are absent allow everything and end at the first error.
struct Questions {
    std::function<bool(const std::string& subpath)> should;
    std::function<bool(const Error& error, const std::string& subpath)> shouldProceed;
};

/// Remove the item at `path` and, for a directory, everything below it.
std::optional<Error> removeTree(const std::string& path, const Questions& questions);

enum class Transfer { Copy, Link };

/// Copy or link the item at `from` and, for a directory, everything below it to `to`, which must not exist.
std::optional<Error> transferTree(const std::string& from, const std::string& to, Transfer how,
                                  const Questions& questions);

/// Give a subpath's continuation.
[[nodiscard]] inline std::string joined(const std::string& prefix, const char* name) {
    return prefix.empty() ? std::string(name) : prefix + "/" + name;
}

} // namespace platform::detail
