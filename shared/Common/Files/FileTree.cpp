// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/FileTree.hpp"

#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "shared/Common/Files/ItemIdentifier.hpp"
#include "shared/Common/Files/detail/NodeInside.hpp"
#include "shared/Common/Files/detail/ParentIndex.hpp"
#include "shared/Common/Files/detail/TextWriter.hpp"

namespace tonewright {
namespace {

// A generous estimate of a node's text length: reserving too much memory costs nothing, growing the text
// does.
constexpr std::size_t UsualElementLength = 256;

constexpr std::string_view NotFound = "Warning: The file was not found.";
constexpr std::string_view NotExpandable = "Warning: The file cannot become expanded.";

} // namespace

FileTree::FileTree()
    : _index(std::make_unique<ParentIndex>()) {}

FileTree::~FileTree() = default;

Folder& FileTree::requiredRoot() const {
    if (!root) platform::fatal(platform::UnexpectedNil);
    return *root;
}

void FileTree::attach(const std::shared_ptr<File>& file, const std::shared_ptr<File>& folder) {
    ++_attached;
    file->setParent(folder);
    folder->asFolder()->children.push_back(file);
}

void FileTree::findParent(const std::shared_ptr<File>& file) {
    requiredRoot().setParent(nullptr);
    if (!file) platform::fatal(platform::UnexpectedNil);
    if (file->_indent() < 1) return attach(file, root);
    const auto path = NodeInside::parentPath(*file);
    if (path.isEmpty()) return attach(file, root);
    if (filelist.empty()) return; // the node gets no parent
    const auto folder = _index->find(filelist, path);
    attach(file, folder ? folder : root);
}

void FileTree::clearList() {
    filelist.clear();
    *_index = {}; // the index describes the old contents of the list
}

void FileTree::makeExpandedList() {
    filelist.clear();
    if (!root) platform::fatal(platform::UnexpectedNilUnwrapping);
    for (const auto& child : root->children) child->makeExpandedList(child, filelist);
}

void FileTree::setExpanded(bool value) {
    if (!root) return;
    for (const auto& child : root->children) child->setExpanded(value);
}

std::shared_ptr<File> FileTree::findFileWithUID(std::string_view uid) {
    if (uid == RootContainerItemIdentifier) {
        platform::print("FileTree: The file (root) was found :  " + std::string(uid));
        return root;
    }
    std::shared_ptr<File> found;
    if (!root) return found;
    const ItemIdentifier identifier(uid);
    for (const auto& child : root->children) {
        NodeInside::find(*child, identifier, child, found);
        if (found) break;
    }
    return found;
}

void FileTree::makeExpandedPage(std::string_view identifier) {
    if (!root) return;
    setExpanded(false);
    filelist.clear();
    if (identifier == RootContainerItemIdentifier) {
        root->set_expanded(true);
        makeExpandedList();
        platform::print("FileTree: Root node was expanded.");
        return;
    }
    const auto file = findFileWithUID(identifier);
    if (!file) {
        platform::print(NotFound);
    } else if (file->asFolder() == nullptr) {
        file->set_expanded(false);
        platform::print(NotExpandable);
    } else {
        file->set_expanded(true);
        file->makeExpandedList(file, filelist);
    }
}

void FileTree::makeExpandedPath(std::string_view identifier) {
    setExpanded(false);
    filelist.clear();
    if (identifier == RootContainerItemIdentifier || identifier == WorkingSetContainerItemIdentifier) {
        requiredRoot().set_expanded(true);
        makeExpandedList();
        platform::print("FileTree: (" + std::string(identifier) + ") Root node was expanded.");
        return;
    }
    const auto file = findFileWithUID(identifier);
    if (!file) {
        platform::print(NotFound);
    } else if (file->asFolder() == nullptr) {
        file->set_expanded(false);
        platform::print(NotExpandable);
    } else {
        file->set_expanded(true);
        file->makeExpandedList(file, filelist);
        for (auto ancestor = file->parent(); ancestor; ancestor = ancestor->parent()) {
            ancestor->set_expanded(true);
        }
    }
}

void FileTree::dumpout() const {
    for (const auto& entry : filelist) {
        entry->dumpout();
        if (root && entry == root) return;
    }
}

void FileTree::dumpoutRoot() const {
    if (root) root->dumpout();
}

std::string FileTree::xml() const {
    std::string result;
    result.reserve(_attached * UsualElementLength);
    requiredRoot().xml(result, 0);
    return result;
}

std::string FileTree::list() const {
    std::string result;
    result.reserve(filelist.size() * UsualElementLength);
    {
        TextWriter writer(result);
        writer.write("\n<!-- file list -->\n<files basepath='");
        writer.write(basePath);
        writer.write("'>");
        for (const auto& entry : filelist) {
            writer.write("\n\t");
            NodeInside::writeListElement(*entry, writer);
        }
        writer.write("\n</files>");
    }
    return result;
}

} // namespace tonewright
