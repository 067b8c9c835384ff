// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The tree of a scanned directory, and a working list of nodes. During a scan, the list contains all nodes so
// far in the order of their creation; later it is the page that a browser shows. One thread at a time.
#pragma once

#include "shared/Common/Files/FileList.hpp"
#include "shared/Common/Files/Folder.hpp"

#include <memory>
#include <string>
#include <string_view>

namespace tonewright {

class ParentIndex;

class FileTree {
  public:
    std::string basePath;         // the current directory during the scan
    std::shared_ptr<Folder> root; // null until a scan creates it
    FileList filelist;

    FileTree();
    ~FileTree();
    FileTree(const FileTree&) = delete;
    FileTree& operator=(const FileTree&) = delete;

    /// Adds a new node to its parent folder, which is searched in `filelist`, or to the root. A node below
    /// the first level is not added while `filelist` is empty. It is a fatal error if `root` is null.
    void findParent(const std::shared_ptr<File>& file);
    void clearList();
    /// Fills `filelist` with the root's children and the visible nodes below them. It is a fatal error if
    /// `root` is null.
    void makeExpandedList();
    /// Expands or collapses all nodes below the root.
    void setExpanded(bool value);

    /// Prints the nodes of `filelist`.
    void dumpout() const;
    /// Prints the whole tree.
    void dumpoutRoot() const;
    /// Returns the whole tree as nested elements. It is a fatal error if `root` is null.
    [[nodiscard]] std::string xml() const;
    /// Returns `filelist` as a sequence of elements.
    [[nodiscard]] std::string list() const;

    /// Returns the item whose file number has the text `uid`, or the root if `uid` is
    /// RootContainerItemIdentifier. Returns null if there is no such item, otherwise prints a line.
    [[nodiscard]] std::shared_ptr<File> findFileWithUID(std::string_view uid);
    /// Collapses all nodes and fills `filelist` with one page: the root's children, or a folder and its
    /// children.
    void makeExpandedPage(std::string_view identifier);
    /// Does the same as `makeExpandedPage` and expands the folder's ancestors.
    void makeExpandedPath(std::string_view identifier);

  private:
    [[nodiscard]] Folder& requiredRoot() const;
    void attach(const std::shared_ptr<File>& file, const std::shared_ptr<File>& folder);

    const std::unique_ptr<ParentIndex> _index; // index of `filelist`
    std::size_t _attached = 0;                 // nodes added so far, to estimate the length of texts
};

} // namespace tonewright
