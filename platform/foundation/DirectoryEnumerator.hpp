// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A walk over everything below a directory: depth first, a directory before its contents, and the names in a
// directory in byte order. Links are returned but not followed. A directory is opened only when the item
// after it is requested. A directory that has been deleted by then or cannot be opened counts as empty. If
// reading the names of a directory fails, the names read so far are returned, and the error is recorded. One
// thread at a time.
#pragma once

#include "platform/foundation/Error.hpp"
#include "platform/foundation/FileAttributes.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

namespace detail {
struct Questions;
}

/// The results of the file manager's queries for one item.
struct FileFacts {
    bool exists = false; // this field and the next four follow links
    bool isDirectory = false;
    bool isReadable = false;
    bool isWritable = false;
    bool isExecutable = false;
    bool isDeletable = false;
    FileAttributes attributes;  // attributes of the item itself; empty if they could not be read
    std::optional<Error> error; // why the attributes could not be read
};

class DirectoryEnumerator {
  public:
    /// Opens the directory at `path`, following a link. Returns null if that fails.
    [[nodiscard]] static std::shared_ptr<DirectoryEnumerator> open(const std::string& path);
    ~DirectoryEnumerator();
    DirectoryEnumerator(const DirectoryEnumerator&) = delete;
    DirectoryEnumerator& operator=(const DirectoryEnumerator&) = delete;

    /// Returns the path of the next item relative to the enumerated directory, or no value at the end. The
    /// text is valid until the next call.
    [[nodiscard]] std::optional<std::string_view> nextObject();
    /// Returns the depth of the item that was returned last: 1 for items directly inside the directory.
    [[nodiscard]] std::int64_t level() const noexcept;
    /// Returns the attributes of the enumerated directory itself, or no value if they cannot be read. Call
    /// before the walk enters a subdirectory.
    [[nodiscard]] std::optional<FileAttributes> directoryAttributes() const;

    /// Returns the facts about the item that was returned last. They are queried through its open directory
    /// instead of its path, which is faster and works for paths of any length.
    [[nodiscard]] FileFacts facts();
    /// Returns the number of items in the directory that contains the item that was returned last.
    [[nodiscard]] std::size_t siblingCount() const noexcept;
    /// Returns one error for each directory whose names could not be read completely, in the order of the
    /// walk.
    [[nodiscard]] const std::vector<Error>& readErrors() const noexcept;

  private:
    friend class FileManager;
    /// Removes the item that was returned last, through its open directory. `path` is used in error texts.
    std::optional<Error> removeItem(const std::string& path, const detail::Questions& questions);

    class Implementation;
    explicit DirectoryEnumerator(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> _implementation;
};

} // namespace platform
