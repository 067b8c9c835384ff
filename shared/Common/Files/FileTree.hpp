// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A scanned directory: its root node, where it was scanned, and a working list of nodes. During a scan the
// list holds the nodes so far, in the order of their creation; later it is the page that a browser shows.
// Used from one thread at a time.
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
    std::string basePath;         // the current directory while it was scanned
    std::shared_ptr<Folder> root; // absent until a scan creates it
    FileList filelist;

    FileTree();
    ~FileTree();
    FileTree(const FileTree&) = delete;
    FileTree& operator=(const FileTree&) = delete;

    /// Attaches a new node to the folder in `filelist` that its subpath names, or to the root. A node below
    /// the first level stays unattached while `filelist` is empty. An absent root is fatal.
    void findParent(const std::shared_ptr<File>& file);
    void clearList();
    /// Fills `filelist` with the root's children and the visible nodes below them. An absent root is fatal.
    void makeExpandedList();
    /// Sets the expansion of everything below the root.
    void setExpanded(bool value);

    /// Prints the nodes of `filelist`.
    void dumpout() const;
    /// Prints the whole tree.
    void dumpoutRoot() const;
    /// Returns the whole tree as nested elements. An absent root is fatal.
    [[nodiscard]] std::string xml() const;
    /// Returns `filelist` as a sequence of elements.
    [[nodiscard]] std::string list() const;

    /// Returns the item whose file number has the text `uid`, or the root for the root container's
    /// identifier; null when there is none. Prints a line when it finds one.
    [[nodiscard]] std::shared_ptr<File> findFileWithUID(std::string_view uid);
    /// Collapses everything and fills `filelist` with one page: the root's children, or a folder and its
    /// children.
    void makeExpandedPage(std::string_view identifier);
    /// Does the same and expands the folder's ancestors.
    void makeExpandedPath(std::string_view identifier);

  private:
    [[nodiscard]] Folder& requiredRoot() const;
    void attach(const std::shared_ptr<File>& file, const std::shared_ptr<File>& folder);

    const std::unique_ptr<ParentIndex> _index; // of `filelist`
    std::size_t _attached = 0;                 // nodes so far: a rough estimate of a text's length
};

} // namespace tonewright
