// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Finds the folder that a backward scan of a list of nodes would find, without scanning. It is valid as long
// as the list is only appended to and no node in it is relabelled; after any other change it scans, and
// rebuilds the index at the next search. Used from one thread at a time.
#pragma once

#include "shared/Common/Files/FileList.hpp"
#include "shared/Common/Files/detail/NodeLocation.hpp"

#include <cstdint>
#include <memory>
#include <optional>
#include <vector>

namespace tonewright {

class ParentIndex {
  public:
    /// Returns the last entry of `list` that is a directory and has the subpath `path`; null when there is
    /// none. A directory after it in the list that is not a `Folder` is fatal, as it is for the scan.
    [[nodiscard]] std::shared_ptr<File> find(const FileList& list, const NodePath& path);
    /// Returns the same by scanning.
    [[nodiscard]] static std::shared_ptr<File> walk(const FileList& list, const NodePath& path);

  private:
    struct Stamp {
        std::uint64_t edits = 0;
        std::uint64_t relabelings = 0;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };
    void forget();
    void indexNewEntries(const FileList& list);

    // A slot in an open hash table of the folders' positions in the list. The subpaths themselves are read
    // from the nodes.
    struct Slot {
        std::size_t hash = 0;
        std::size_t next = 0; // the position plus one; 0: free
    };
    void insert(const FileList& list, std::size_t position);
    [[nodiscard]] Slot& slotOf(const FileList& list, const NodePath& path, std::size_t hash);

    std::vector<Slot> _slots;
    std::size_t _folders = 0;
    std::size_t _indexed = 0;               // entries looked at
    std::optional<std::size_t> _lastMisfit; // the last directory that is not a `Folder`
    std::optional<NodePath> _lastPath;      // the last search; a folder's contents follow one another
    std::optional<std::size_t> _lastFound;
    Stamp _stamp;                 // of the list that the index describes
    std::optional<Stamp> _walked; // of the list as it was at the last walk
};

} // namespace tonewright
