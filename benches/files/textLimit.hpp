// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The least that writing the tree's texts can cost: the same bytes from a flat array in the tree's order.
#pragma once

#include "benches/files/flatScan.hpp"

#include <cstdlib>
#include <memory>
#include <string>
#include <string_view>

struct LimitText {
    struct Free {
        void operator()(char* text) const noexcept { std::free(text); }
    };
    std::unique_ptr<char, Free> text;
    std::size_t length = 0;

    [[nodiscard]] std::string_view view() const { return {text.get(), length}; }
};

/// Orders `tree` as the library lists it: the names of a folder in byte order, folders before their contents.
[[nodiscard]] FlatTree sorted(const FlatTree& tree);

/// Writes what `FileTree::xml()` writes below the root's own opening element, and its end.
[[nodiscard]] LimitText limitXML(const FlatTree& tree, const std::string& opening);
/// Writes what `FileTree::list()` writes of all items.
[[nodiscard]] LimitText limitList(const FlatTree& tree, const std::string& basePath);
/// Writes to standard output, line by line, as many lines of the same length as a dump of the plain files and
/// folders has: `lines` are its bytes, made beforehand.
void limitDump(const std::string& lines);
