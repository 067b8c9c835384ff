// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The least a scan can do: one statx per item on its open directory, getdents64 with a kept buffer, computed
// access rights, one flat record per item and its name in one buffer. It does not sort, keeps no tree and
// handles no errors.
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
    std::uint32_t parent; // the record of the folder; its own number for one at the top
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
