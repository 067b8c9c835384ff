// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes lines to standard output, and messages for people to standard error. Any thread except the audio
// thread. Lines of concurrent threads are not mixed.
#pragma once

#include <string_view>

namespace platform {

/// Writes `line`, which may contain NUL bytes, and a newline to standard output without buffering. If
/// standard output is closed or broken, the line is lost.
void print(std::string_view line);

/// Returns the error number of the last line that `print` lost, or 0.
[[nodiscard]] int printError() noexcept;

/// Redirects `print` to standard error, or back to standard output. For programs that write other data to
/// standard output. Call before any other thread runs.
void printToStandardError(bool instead);

/// Redirects `print` to the open file `descriptor`, which must stay open. Call before any other thread runs.
void printToFile(int descriptor);

/// Writes `line` and a newline to standard error without buffering.
void warn(std::string_view line);

/// Reserves standard output for `print`: from now on, everything else that is written to standard output, by
/// a library for example, goes to standard error. Also opens closed standard descriptors, so that no file
/// opened later gets their numbers. Call once, before any other thread runs.
void reserveStandardOutput();

} // namespace platform
