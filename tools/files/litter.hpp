// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What a scan would delete.
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
    std::vector<platform::Error> readErrors; // for which there may be more
};

/// Returns the items below `directory` that a scan deletes; what lies inside one of them goes with it and is
/// not named. Absent when the directory cannot be opened. `seen` counts the items looked at.
[[nodiscard]] std::optional<Litter> findLitter(const std::string& directory, std::atomic<std::int64_t>& seen);

/// Returns a path as one line: one with a newline begins with "\" instead of "/", and "\n" and "\\" in it
/// stand for a newline and a "\".
[[nodiscard]] std::string lineOf(std::string path);

/// Asks on the terminal whether `litter` may be deleted; false without a terminal to ask on.
[[nodiscard]] bool mayDelete(const std::vector<std::string>& litter);

} // namespace tonewright::tool
