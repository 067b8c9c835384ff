// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The nodes of a tree own each other in cycles; a test takes them apart so that leak checkers see the real
// ones.
#pragma once

#include "shared/Common/Files/FileTree.hpp"

namespace tonewright::test {

inline void takeApart(const std::shared_ptr<File>& top) {
    std::vector<std::shared_ptr<File>> left{top};
    while (!left.empty()) {
        const auto node = std::move(left.back());
        left.pop_back();
        if (!node) continue;
        node->setParent(nullptr);
        if (Folder* folder = node->asFolder()) {
            for (auto& child : std::exchange(folder->children, {})) left.push_back(std::move(child));
        }
    }
}

inline void takeApart(FileTree& tree) {
    takeApart(tree.root);
    for (const auto& node : tree.filelist) takeApart(node);
    tree.clearList();
}

} // namespace tonewright::test
