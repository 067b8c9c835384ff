// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The system's lines on standard output, and what a person must be told on standard error.
// Any thread, but not the audio thread. A line is one write and stays whole when threads write together.
#pragma once

#include <string_view>

namespace platform {

/// Writes `line` and one newline to standard output, by length (NUL bytes pass), at once.
/// A closed or broken standard output loses the line and nothing else.
void print(std::string_view line);

/// Returns the error number for which a line of `print` to standard output was lost, or 0.
[[nodiscard]] int printError() noexcept;

/// Lets `print` write to standard error instead, or no longer: for a program whose standard output is a
/// result of its own. Call before any other thread runs.
void printToStandardError(bool instead);

/// Lets `print` write to the open file `descriptor` in the place of standard output, and keeps it open. Call
/// before any other thread runs.
void printToFile(int descriptor);

/// Writes `line` and one newline to standard error, at once.
void warn(std::string_view line);

/// Keeps standard output for `print` alone: from now on whatever a library writes to it goes to standard
/// error. Also occupies closed standard descriptors, so that no file opened later is taken for one. Call
/// once, at entry, before any other thread runs.
void reserveStandardOutput();

} // namespace platform
