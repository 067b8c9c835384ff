// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The least work that writing the tree's texts can cost: the same bytes, written from a flat array that is
// already in the tree's order.
#pragma once

#include "benches/files/flatScan.hpp"

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

struct LimitText {
    struct Free {
        // NOLINTNEXTLINE(cppcoreguidelines-no-malloc): see `room`
        void operator()(char* text) const noexcept { std::free(text); }
    };
    std::unique_ptr<char, Free> text;
    std::size_t length = 0;

    [[nodiscard]] std::string_view view() const { return {text.get(), length}; }
};

/// Orders `tree` as the library lists it: names within a folder in byte order, each folder before its
/// contents.
[[nodiscard]] FlatTree sorted(const FlatTree& tree);

/// Writes `opening` and then the same text as `FileTree::xml()` after the root's opening element.
[[nodiscard]] LimitText limitXML(const FlatTree& tree, const std::string& opening);
/// Writes the same text as `FileTree::list()` for all items.
[[nodiscard]] LimitText limitList(const FlatTree& tree, const std::string& basePath);
/// Writes `lines`, a finished dump, to standard output with one call per line.
void limitDump(const std::string& lines);
