// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The nodes of a tree own each other in cycles; a test takes them apart so that leak checkers see the real
// ones.
#pragma once

#include "shared/Common/Files/FileTree.hpp"

namespace tonewright::test {

inline void takeApart(const std::shared_ptr<File>& node) {
    if (!node) return;
    node->setParent(nullptr);
    if (Folder* folder = node->asFolder()) {
        const auto children = std::exchange(folder->children, {});
        for (const auto& child : children) takeApart(child);
    }
}

inline void takeApart(FileTree& tree) {
    takeApart(tree.root);
    for (const auto& node : tree.filelist) takeApart(node);
    tree.clearList();
}

} // namespace tonewright::test
