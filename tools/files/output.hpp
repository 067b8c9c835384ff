// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where the tool's result goes.
#pragma once

#include <string>
#include <string_view>

namespace tonewright::tool {

/// Writes `text` and one newline to the file `name`, or to standard output for "-"; false, with a line on
/// standard error, when that fails.
[[nodiscard]] bool writeResult(std::string_view text, const std::string& name);

/// Returns whether every printed line was written; if not, a line on standard error says so.
[[nodiscard]] bool linesGotOut(const std::string& name);

/// Lets the lines go to the file `name` from now on, or stay on standard output for "-"; false, with a line
/// on standard error, when it cannot be opened.
[[nodiscard]] bool redirectOutput(const std::string& name);

} // namespace tonewright::tool
