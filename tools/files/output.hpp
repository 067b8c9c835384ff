// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes the result of the tool.
#pragma once

#include <string>
#include <string_view>

namespace tonewright::tool {

/// Writes `text` and a newline to the file `name`, or to standard output if `name` is "-". If that fails,
/// returns false and reports the reason on standard error.
[[nodiscard]] bool writeResult(std::string_view text, const std::string& name);

/// Returns whether all printed lines have been written. If not, reports the reason on standard error. `name`
/// is the name of the output.
[[nodiscard]] bool linesGotOut(const std::string& name);

/// Redirects printed lines to the file `name`, unless it is "-". If the file cannot be opened, returns false
/// and reports the reason on standard error.
[[nodiscard]] bool redirectOutput(const std::string& name);

} // namespace tonewright::tool
