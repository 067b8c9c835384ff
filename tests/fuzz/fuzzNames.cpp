// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Uses arbitrary bytes as names and paths of nodes, and writes the nodes' texts.
#include "tests/fuzz/fuzz.hpp"

#include "platform/foundation/DateFormatter.hpp"
#include "tests/files/nodes.hpp"

#include <cstring>

using namespace tonewright;

namespace {

// Returns the number of path components; a leading "/" counts as one.
std::int64_t componentCount(std::string_view path) {
    std::int64_t count = path.starts_with('/') ? 1 : 0;
    bool inside = false;
    for (const char c : path) {
        if (c != '/' && !inside) ++count;
        inside = c != '/';
    }
    return count;
}

// Creates a node from a piece of the input: the first nine bytes are numbers, the others its path.
std::shared_ptr<File> nodeFrom(std::string_view piece) {
    std::shared_ptr<File> node = std::make_shared<Folder>();
    unsigned char flags = 0;
    std::int64_t number = 0;
    if (piece.size() > 9) {
        flags = static_cast<unsigned char>(piece[0]);
        std::memcpy(&number, piece.data() + 1, sizeof number);
        piece.remove_prefix(9);
    }
    if ((flags & 1U) == 0) node = std::make_shared<File>();
    node->setIsDirectory((flags & 1U) != 0 && (flags & 2U) == 0);
    node->setRootpath((flags & 4U) != 0 ? "/root/" : piece.substr(piece.size() / 2));
    node->setSubpath(piece);
    require(node->subpath() == piece);
    require(node->_indent() == componentCount(piece) - 1);
    if ((flags & 8U) != 0) {
        auto attributes = test::attributesOf(static_cast<std::uint64_t>(number), number);
        attributes.setValue(platform::FileAttributeKey::NSFileCreationDate, platform::Date{number, 0});
        node->setAttributes(attributes);
    }
    return node;
}

} // namespace

void fuzzOne(std::string_view input) {
    FileTree tree;
    tree.root = std::make_shared<Folder>();
    tree.root->setIsDirectory(true);
    std::size_t names = 0;
    while (!input.empty()) {
        const std::size_t length =
            std::min(input.size(), std::size_t{1} + static_cast<unsigned char>(input[0]));
        const auto node = nodeFrom(input.substr(0, length));
        input.remove_prefix(length);
        tree.findParent(node);
        tree.filelist.push_back(node);
        names += node->getFileName().size() + node->getFileExtension().size() + node->getParentPath().size();
        if (names % 5 == 0) tree.filelist[0]->setSubpath(node->subpath());
    }
    const FileList listed = tree.filelist; // includes nodes that were never attached to the root
    (void)tree.xml();
    bool listable = true;
    for (const auto& node : tree.filelist) listable = listable && node->_indent() >= 0;
    if (listable) {
        const std::string list = tree.list();
        require(list.size() >= tree.filelist.size());
        tree.dumpout();
    }
    if (!tree.filelist.empty()) tree.makeExpandedPath(tree.filelist[0]->getSystemFileNumberFormatted());
    test::takeApart(tree);
    for (const auto& node : listed) test::takeApart(node);
}
