// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Finds the processes of effects that a test has started.
#pragma once

#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <sys/types.h>
#include <vector>

namespace platform::test {

/// Returns the process IDs of the effects' processes, or of their interfaces', that this process has started
/// and that have not ended.
inline std::vector<pid_t> effectProcesses(bool ofInterfaces = false) {
    const auto contentOf = [](const std::filesystem::path& path) {
        std::ifstream file(path);
        return std::string((std::istreambuf_iterator<char>(file)), {});
    };
    std::vector<pid_t> found;
    for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
        std::ifstream children(task.path() / "children");
        for (pid_t process = 0; children >> process;) {
            const std::filesystem::path about = "/proc/" + std::to_string(process);
            const std::string status = contentOf(about / "stat");
            const bool isInterface = contentOf(about / "cmdline").find("--interface") != std::string::npos;
            if (status.find("(tonewright-") != std::string::npos &&
                status.find(") Z ") == std::string::npos && isInterface == ofInterfaces) {
                found.push_back(process);
            }
        }
    }
    return found;
}

/// Returns the process ID of the first of the effects' processes, or 0 if none is running.
inline pid_t firstEffectProcess() {
    const auto found = effectProcesses();
    return found.empty() ? 0 : found.front();
}

/// Returns the names of the files that the descriptors of this process refer to.
inline std::multiset<std::string> openDescriptors() {
    std::multiset<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code closed; // set for the iteration's own descriptor
        found.insert(std::filesystem::read_symlink(entry.path(), closed).string());
    }
    return found;
}

} // namespace platform::test
