// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Nodes like those from a scan of /music.
#pragma once

#include "shared/Common/Files/FileTree.hpp"

namespace tonewright::test {

/// Returns attributes with the file number, the size, and dates in 1970 and 2026.
inline platform::FileAttributes attributesOf(std::uint64_t number, std::int64_t size) {
    using platform::FileAttributeKey;
    platform::FileAttributes attributes;
    attributes.setValue(FileAttributeKey::NSFileSystemFileNumber, platform::NSNumber(number));
    attributes.setValue(FileAttributeKey::NSFileSize, platform::NSNumber(size));
    attributes.setValue(FileAttributeKey::NSFileCreationDate, platform::Date{0, 0});
    attributes.setValue(FileAttributeKey::NSFileModificationDate, platform::Date{1'794'822'014, 0});
    return attributes;
}

/// Creates a node; without a number it has no attributes.
template <class Node = File>
std::shared_ptr<Node> makeNode(std::string_view subpath, std::uint64_t number = 0, std::int64_t size = 0) {
    auto node = std::make_shared<Node>();
    node->setRootpath("/music");
    if (!subpath.empty()) node->setSubpath(subpath);
    node->setIsDirectory(std::is_same_v<Node, Folder>);
    node->setExists(true);
    if (number != 0) node->setAttributes(attributesOf(number, size));
    node->setUid(node->getSystemFileNumber());
    return node;
}

/// Creates a node and attaches it to its parent, as a scan does.
template <class Node = File>
std::shared_ptr<Node> addNode(FileTree& tree, std::string_view subpath, std::uint64_t number = 0,
                              std::int64_t size = 0) {
    auto node = makeNode<Node>(subpath, number, size);
    tree.findParent(node);
    tree.filelist.push_back(node);
    return node;
}

// Breaks the reference cycles among the nodes of a tree, so that leak checkers report only real leaks.
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
