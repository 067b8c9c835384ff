// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What a process that handles files of strangers gives up before it looks at them. Both calls hold for the
// whole process and for good; to be made before any other thread runs. Private to platform.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace platform::detail {

struct ResourceLimits {
    std::uint64_t processorSeconds; // of all threads together
    std::uint64_t memoryBytes;      // private writable memory; not held in builds with a sanitizer
    std::uint64_t fileBytes;        // of a file that it writes, one in memory too
    std::uint64_t descriptors;
};

/// Sets these limits, leaves no core file behind and ends with the thread that started the process. False
/// when the system refuses.
[[nodiscard]] bool limitResources(const ResourceLimits& limits);

/// Allows only reading below `places`, which need not exist, and no new process, program or socket, nor
/// anything that reaches other processes. What the kernel does not offer is left out; false when it refuses
/// what it offers. What is open stays open.
[[nodiscard]] bool confineToReading(const std::vector<std::string>& places);

} // namespace platform::detail
