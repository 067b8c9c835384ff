// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/userDirectories.hpp"

#include <cstdlib>
#include <fstream>
#include <pwd.h>
#include <unistd.h>

namespace platform {
namespace {

// Returns the value that a line of user-dirs.dirs assigns to `name`, or an empty string. A line has the form
// XDG_KEY_DIR="$HOME/name" or XDG_KEY_DIR="/absolute"; a backslash escapes the next character.
std::string valueOfLine(std::string_view line, std::string_view name) {
    while (!line.empty() && (line.front() == ' ' || line.front() == '\t')) line.remove_prefix(1);
    if (!line.starts_with(name)) return {};
    line.remove_prefix(name.size());
    if (!line.starts_with("=\"")) return {};
    line.remove_prefix(2);
    std::string value;
    for (std::size_t i = 0; i < line.size() && line[i] != '"'; ++i) {
        if (line[i] == '\\' && i + 1 < line.size()) ++i;
        value += line[i];
    }
    return value;
}

} // namespace

std::string homeDirectory() {
    if (const char* home = std::getenv("HOME"); home != nullptr && home[0] == '/') return home;
    passwd entry{};
    passwd* found = nullptr;
    char buffer[4096];
    if (::getpwuid_r(::getuid(), &entry, buffer, sizeof buffer, &found) == 0 && found != nullptr) {
        return found->pw_dir;
    }
    return "/";
}

std::string baseDirectory(const char* name, std::string_view fallback) {
    if (const char* path = std::getenv(name); path != nullptr && path[0] == '/') return path;
    return homeDirectory() + "/" + std::string(fallback);
}

std::string userDirectory(std::string_view key, std::string_view fallback) {
    const std::string home = homeDirectory();
    const std::string name = "XDG_" + std::string(key) + "_DIR";
    std::ifstream file(baseDirectory("XDG_CONFIG_HOME", ".config") + "/user-dirs.dirs");
    std::string directory;
    for (std::string line; std::getline(file, line);) {
        std::string value = valueOfLine(line, name);
        if (value.starts_with("$HOME")) value = home + value.substr(5);
        if (value.starts_with('/')) directory = value; // the last assignment wins, as in a shell
    }
    return directory.empty() ? home + "/" + std::string(fallback) : directory;
}

} // namespace platform
