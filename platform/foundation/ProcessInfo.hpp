// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Information about the running process. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

class ProcessInfo {
  public:
    /// Returns the only instance.
    [[nodiscard]] static const ProcessInfo& processInfo();

    /// Returns the file name of the running program.
    [[nodiscard]] std::string processName() const;
    [[nodiscard]] std::int32_t processIdentifier() const noexcept;
    /// Returns a new random UUID (RFC 4122, version 4) in upper case.
    [[nodiscard]] std::string globallyUniqueString() const;
};

} // namespace platform
