// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The least work that a scan can do: getdents64 into one reused buffer, one statx per item relative to its
// open directory, access rights computed from the mode, one flat record per item, and all names in one
// buffer. The scan does not sort, builds no tree and handles no errors.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

struct FlatRecord {
    std::uint64_t size;
    std::uint64_t fileNumber;
    std::int64_t modification;
    std::int64_t creation;
    std::uint32_t modificationNanoseconds;
    std::uint32_t creationNanoseconds;
    std::uint32_t mode;
    std::uint32_t owner;
    std::uint32_t group;
    std::uint32_t links;
    std::uint32_t parent; // index of the folder's record; 0 for items at the top
    std::uint32_t nameOffset;
    std::uint16_t nameLength;
    std::uint16_t depth;
    std::uint8_t rights; // readable 1, writable 2, executable 4, deletable 8
    bool isDirectory;
};

struct FlatTree {
    std::vector<FlatRecord> records; // depth first, a folder before its contents
    std::vector<char> names;

    [[nodiscard]] std::string_view name(const FlatRecord& record) const {
        return {names.data() + record.nameOffset, record.nameLength};
    }
};

[[nodiscard]] FlatTree flatScan(const char* root);
