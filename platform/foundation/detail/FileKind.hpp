// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The attributes that many items have in common: owner, group, permissions, type, file system and number of
// links. Each combination is stored only once, and an item refers to it by a number of four bytes. Any
// thread.
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

/// Returns the number of `kind`, which is at least 1 and the same for equal kinds. Returns 0 if the table,
/// which can hold some millions, is full.
[[nodiscard]] std::uint32_t numberOfKind(const FileKind& kind);
/// Returns the kind of a number that `numberOfKind` returned.
[[nodiscard]] const FileKind& kindOfNumber(std::uint32_t number) noexcept;

/// Returns the name of the account, or no value if it has none. Each name is looked up only once per process.
[[nodiscard]] std::optional<std::string> userName(std::uint32_t user);
[[nodiscard]] std::optional<std::string> groupName(std::uint32_t group);

} // namespace platform::detail
