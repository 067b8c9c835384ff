// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A walk over everything below a directory, depth first, a directory before its contents, the names of one
// directory in byte order. It is lazy: a directory is opened only when the item after it is requested; one
// that was deleted meanwhile or cannot be opened counts as empty; one that fails while its names are read
// yields those that were read, and an error. Links are returned and not followed. Used from one thread at a
// time.
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

/// The file manager's answers for one item.
struct FileFacts {
    bool exists = false; // this and the next four follow a link
    bool isDirectory = false;
    bool isReadable = false;
    bool isWritable = false;
    bool isExecutable = false;
    bool isDeletable = false;
    FileAttributes attributes;  // of the item itself; empty if they could not be read
    std::optional<Error> error; // why they could not be read
};

class DirectoryEnumerator {
  public:
    /// Opens the directory at `path` (a link to one is followed); null when that fails.
    [[nodiscard]] static std::shared_ptr<DirectoryEnumerator> open(const std::string& path);
    ~DirectoryEnumerator();
    DirectoryEnumerator(const DirectoryEnumerator&) = delete;
    DirectoryEnumerator& operator=(const DirectoryEnumerator&) = delete;

    /// Returns the next item as a path relative to the directory, valid until the next call; absent at the
    /// end.
    [[nodiscard]] std::optional<std::string_view> nextObject();
    /// Returns the depth of the item last returned: 1 for items directly inside the directory.
    [[nodiscard]] std::int64_t level() const noexcept;
    /// Returns the attributes of the enumerated directory itself; absent when they cannot be read.
    [[nodiscard]] std::optional<FileAttributes> directoryAttributes() const;

    /// Returns what the file manager would answer for the item last returned, asked of its open directory and
    /// not by its path: faster, and right for paths of any length.
    [[nodiscard]] FileFacts facts();
    /// Returns the number of items in the directory of the item last returned.
    [[nodiscard]] std::size_t siblingCount() const noexcept;
    /// Returns why directories could not be read completely, one error for each, in the order of the walk.
    [[nodiscard]] const std::vector<Error>& readErrors() const noexcept;

  private:
    friend class FileManager;
    /// Removes the item last returned from its open directory; `path` names it in errors.
    std::optional<Error> removeItem(const std::string& path, const detail::Questions& questions);

    class Implementation;
    explicit DirectoryEnumerator(std::unique_ptr<Implementation> implementation);
    std::unique_ptr<Implementation> _implementation;
};

} // namespace platform
