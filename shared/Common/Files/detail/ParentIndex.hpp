// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Finds the folder that a backward scan of a list of nodes would find, without scanning. The index remains
// valid while nodes are only appended to the list and no `subpath` or `isDirectory` in the list changes.
// After such a change, the next search scans the list and the one after it rebuilds the index. One thread at
// a time.
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
    /// Returns the last entry of `list` that is a directory with the subpath `path`, or null if there is
    /// none. It is a fatal error if a later entry is a directory but not a `Folder`.
    [[nodiscard]] std::shared_ptr<File> find(const FileList& list, const NodePath& path);
    /// Does the same as `find` by scanning the list.
    [[nodiscard]] static std::shared_ptr<File> walk(const FileList& list, const NodePath& path);

  private:
    struct Stamp {
        std::uint64_t edits = 0;
        std::uint64_t relabelings = 0;
        friend bool operator==(const Stamp&, const Stamp&) = default;
    };
    void forget();
    void indexNewEntries(const FileList& list);

    // A slot of an open-addressing hash table with the positions of folders in the list. Subpaths are read
    // from the nodes.
    struct Slot {
        std::size_t hash = 0;
        std::size_t next = 0; // position plus 1; 0 if the slot is free
    };
    void insert(const FileList& list, std::size_t position);
    [[nodiscard]] Slot& slotOf(const FileList& list, const NodePath& path, std::size_t hash);

    std::vector<Slot> _slots;
    std::size_t _folders = 0;
    std::size_t _indexed = 0;               // number of entries that have been indexed
    std::optional<std::size_t> _lastMisfit; // position of the last directory that is not a `Folder`
    std::optional<NodePath> _lastPath; // path of the last search, because items of a folder come in sequence
    std::optional<std::size_t> _lastFound;
    Stamp _stamp;                 // state of the list that the index describes
    std::optional<Stamp> _walked; // state of the list at the last scan
};

} // namespace tonewright
