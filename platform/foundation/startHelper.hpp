// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Starts the application's own helper programs.
#pragma once

#include "platform/foundation/Result.hpp"

#include <string>
#include <vector>

namespace platform {

/// A descriptor that a new process inherits under another number.
struct Inherited {
    int ours = -1, theirs = -1;
};

/// Starts the helper program `name` with these arguments and returns its process ID, or the reason why the
/// program cannot be started. The process inherits standard error and `descriptors`. Its standard input is
/// /dev/null, and so is its standard output unless it is among `descriptors`. Signals have their default
/// actions and none is blocked. The process has no real-time priority. Any thread.
[[nodiscard]] Result<int> startHelper(const std::string& name, std::vector<std::string> arguments,
                                      const std::vector<Inherited>& descriptors);

} // namespace platform
