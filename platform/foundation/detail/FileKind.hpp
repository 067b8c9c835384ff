// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What many items share (owner, group, permissions, type, file system, number of links), stored once for all
// of them: an item then needs only four bytes for it. Any thread.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace platform::detail {

struct FileKind {
    std::uint64_t device = 0;
    std::uint32_t mode = 0;
    std::uint32_t links = 0;
    std::uint32_t owner = 0;
    std::uint32_t group = 0;
    bool isImmutable = false;
    bool isAppendOnly = false;

    friend bool operator==(const FileKind&, const FileKind&) = default;
};

/// Returns the number of `kind`, 1 or more, the same for equal kinds; 0 when the table (some millions) is
/// full.
[[nodiscard]] std::uint32_t numberOfKind(const FileKind& kind);
/// Returns the kind of a number that `numberOfKind` returned.
[[nodiscard]] const FileKind& kindOfNumber(std::uint32_t number) noexcept;

/// Returns the account's name, looked up once in the life of the process; absent when it has none.
[[nodiscard]] std::optional<std::string> userName(std::uint32_t user);
[[nodiscard]] std::optional<std::string> groupName(std::uint32_t group);

} // namespace platform::detail
