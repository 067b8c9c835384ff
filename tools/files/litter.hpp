// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The items that a scan would delete.
#pragma once

#include "platform/foundation/Error.hpp"

#include <atomic>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace tonewright::tool {

struct Litter {
    std::vector<std::string> subpaths;
    std::vector<platform::Error> readErrors; // directories that may contain more litter
};

/// Returns the items below `directory` that a scan deletes, without the items inside a deleted directory.
/// Returns no value if `directory` cannot be opened. `seen` counts the items examined so far.
[[nodiscard]] std::optional<Litter> findLitter(const std::string& directory, std::atomic<std::int64_t>& seen);

/// Returns `path` as one line. If it contains a newline, the line starts with an additional "\", and newlines
/// and backslashes are escaped as "\n" and "\\".
[[nodiscard]] std::string lineOf(std::string path);

/// Asks on the terminal whether `litter` may be deleted. Returns false if there is no terminal.
[[nodiscard]] bool mayDelete(const std::vector<std::string>& litter);

} // namespace tonewright::tool
