// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The user's directories according to the desktop's standards. Any thread. Sources: xdg-user-dirs
// (user-dirs.dirs), XDG Base Directory.
#pragma once

#include <string>
#include <string_view>

namespace platform {

/// Returns the home directory: `HOME`, else the password file's, else "/".
[[nodiscard]] std::string homeDirectory();
/// Returns the directory that `XDG_<key>_DIR` names in user-dirs.dirs, else `fallback` in the home directory.
[[nodiscard]] std::string userDirectory(std::string_view key, std::string_view fallback);
/// Returns the absolute path in the environment variable `name`, else `fallback` in the home directory.
[[nodiscard]] std::string baseDirectory(const char* name, std::string_view fallback);

} // namespace platform
