// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The system's lines on standard output, and messages for people on standard error. Any thread except the
// audio thread. A line is one write and stays whole when threads write concurrently.
#pragma once

#include <string_view>

namespace platform {

/// Writes `line` and one newline to standard output, by length (NUL bytes pass), at once. If standard output
/// is closed or broken the line is lost and nothing else happens.
void print(std::string_view line);

/// Returns the error number with which `print` lost a line to standard output, or 0.
[[nodiscard]] int printError() noexcept;

/// Redirects `print` to standard error, or back: for a program whose standard output is a result of its own.
/// Call before any other thread runs.
void printToStandardError(bool instead);

/// Redirects `print` to the open file `descriptor`, and keeps it open. Call before any other thread runs.
void printToFile(int descriptor);

/// Writes `line` and one newline to standard error, at once.
void warn(std::string_view line);

/// Reserves standard output for `print`: from now on whatever a library writes to it goes to standard error.
/// Also occupies closed standard descriptors, so that no file opened later takes their place. Call once, at
/// entry, before any other thread runs.
void reserveStandardOutput();

} // namespace platform
