// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The rights that a process gives up before it handles untrusted files. Both calls apply to the whole process
// for good; call them before any other thread runs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform {

struct ResourceLimits {
    std::uint64_t processorSeconds; // of all threads together
    std::uint64_t memoryBytes;      // private writable memory; not held in builds with a sanitizer
    std::uint64_t fileBytes;        // of a file that it writes, including one in memory
    std::uint64_t descriptors;
};

/// Sets these limits, disables core files and lets the process end with the thread that started it. False if
/// the system refuses.
[[nodiscard]] bool limitResources(const ResourceLimits& limits);

/// Allows only reading below `places`, which need not exist, and no new process, program or socket, nor
/// anything that reaches other processes. What the kernel does not support is left out; false if it refuses
/// what it supports. What is already open stays open.
[[nodiscard]] bool confineToReading(const std::vector<std::string>& places);

} // namespace platform
