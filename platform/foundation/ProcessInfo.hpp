// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the process knows about itself. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace platform {

class ProcessInfo {
  public:
    /// Returns the one record of this process.
    [[nodiscard]] static const ProcessInfo& processInfo();

    /// Returns the name of the running program's file.
    [[nodiscard]] std::string processName() const;
    [[nodiscard]] std::int32_t processIdentifier() const noexcept;
    /// Returns a text that no other call on any machine returns: a random UUID (RFC 4122, version 4) in upper
    /// case.
    [[nodiscard]] std::string globallyUniqueString() const;
};

} // namespace platform
