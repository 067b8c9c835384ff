// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The user's directories. Any thread. Sources: xdg-user-dirs (user-dirs.dirs), XDG Base Directory
// Specification.
#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Returns the home directory: the value of `HOME`, or the entry in the password database, or "/".
[[nodiscard]] std::string homeDirectory();
/// Returns the value of `XDG_<key>_DIR` in user-dirs.dirs, or `fallback` in the home directory.
[[nodiscard]] std::string userDirectory(std::string_view key, std::string_view fallback);
/// Returns the absolute path in the environment variable `name`, or `fallback` in the home directory.
[[nodiscard]] std::string baseDirectory(const char* name, std::string_view fallback);

} // namespace platform
