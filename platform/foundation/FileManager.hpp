// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// File operations. Paths are bytes of any length; relative paths start at the current directory of the
// process. Any thread, but the delegate of a manager must be set before operations of the manager run.
#pragma once

#include "platform/foundation/DirectoryEnumerator.hpp"
#include "platform/foundation/FileAttributes.hpp"
#include "platform/foundation/FileManagerDelegate.hpp"
#include "platform/foundation/Result.hpp"
#include "platform/foundation/URL.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace platform {

/// The standard directories.
enum class SearchPathDirectory : unsigned {
    Application = 1,
    DemoApplication = 2,
    DeveloperApplication = 3,
    AdminApplication = 4,
    Library = 5,
    Developer = 6,
    User = 7,
    Documentation = 8,
    Document = 9,
    CoreService = 10,
    AutosavedInformation = 11,
    Desktop = 12,
    Caches = 13,
    ApplicationSupport = 14,
    Downloads = 15,
    InputMethods = 16,
    Movies = 17,
    Music = 18,
    Pictures = 19,
    PrinterDescription = 20,
    SharedPublic = 21,
    PreferencePanes = 22,
    ItemReplacement = 99,
    AllApplications = 100,
    AllLibraries = 101,
};

/// A bit mask that selects directories of the user, of the machine, of the network or of the system.
enum class SearchPathDomain : unsigned { User = 1, Local = 2, Network = 4, System = 8, All = 0xFFFF };

class FileManager {
  public:
    /// Returns the shared file manager of the process.
    [[nodiscard]] static FileManager& defaultManager();

    /// Sets the delegate that decides about this manager's operations, or null. Reset it before the delegate
    /// is destroyed.
    void setDelegate(FileManagerDelegate* delegate) noexcept { _delegate = delegate; }
    [[nodiscard]] FileManagerDelegate* delegate() const noexcept { return _delegate; }

    // The current directory of the process.
    bool changeCurrentDirectoryPath(const std::string& path);
    /// Returns the absolute path of the current directory, or an empty string if it has been removed.
    [[nodiscard]] std::string currentDirectoryPath() const;

    // Queries about one item. All except the last two follow links.
    [[nodiscard]] bool fileExistsAtPath(const std::string& path) const;
    bool fileExistsAtPath(const std::string& path, bool& isDirectory) const;
    [[nodiscard]] bool isReadableFileAtPath(const std::string& path) const;
    [[nodiscard]] bool isWritableFileAtPath(const std::string& path) const;
    [[nodiscard]] bool isExecutableFileAtPath(const std::string& path) const;
    /// Returns whether the process may remove the item: its directory must be writable and searchable, and
    /// the sticky bit of the directory, if set, must allow the removal.
    [[nodiscard]] bool isDeletableFileAtPath(const std::string& path) const;
    /// Returns the item's attributes, which include at least file number, size, modification date and
    /// creation date.
    [[nodiscard]] Result<FileAttributes> attributesOfItemAtPath(const std::string& path) const;

    // The contents of a directory, in byte order.
    /// Returns a walk over everything below `path`, or null if `path` cannot be opened.
    [[nodiscard]] std::shared_ptr<DirectoryEnumerator> enumeratorAtPath(const std::string& path) const;
    [[nodiscard]] Result<std::vector<std::string>> contentsOfDirectoryAtPath(const std::string& path) const;
    [[nodiscard]] Result<std::vector<std::string>> subpathsOfDirectoryAtPath(const std::string& path) const;
    [[nodiscard]] std::optional<std::vector<std::string>> subpathsAtPath(const std::string& path) const;

    // Operations that change files. They ask the delegate before each item and after each error, and return
    // the error that ended the operation, if any. They never follow a link out of the tree, and do not enter
    // file systems mounted below the item.
    /// Removes a file, a link or a directory with its contents. A mount point cannot be removed.
    std::optional<Error> removeItemAtURL(const URL& url);
    /// Removes the item that `enumerator` returned last. The enumerator keeps the item's directory open, so
    /// this works even if that directory has been moved. `url` identifies the item to the delegate and in
    /// errors.
    std::optional<Error> removeItemAtURL(const URL& url, DirectoryEnumerator& enumerator);
    std::optional<Error> removeItemAtPath(const std::string& path);
    /// Copies a file, or a directory with its contents. An existing destination is an error. A file appears
    /// at its destination complete or not at all; if copying a directory fails, the partial copy is removed.
    /// Permissions, the modification date and extended attributes are copied, the owner is not.
    std::optional<Error> copyItemAtURL(const URL& url, const URL& toURL);
    std::optional<Error> copyItemAtPath(const std::string& path, const std::string& toPath);
    /// Moves an item by renaming it or, across file systems, by copying and removing it. An existing
    /// destination is an error.
    std::optional<Error> moveItemAtURL(const URL& url, const URL& toURL);
    std::optional<Error> moveItemAtPath(const std::string& path, const std::string& toPath);
    /// Creates a hard link to a file. For a directory, creates new directories with hard links to all its
    /// files.
    std::optional<Error> linkItemAtURL(const URL& url, const URL& toURL);
    std::optional<Error> linkItemAtPath(const std::string& path, const std::string& toPath);
    /// Creates a directory and its parents. Succeeds if the directory exists. A URL that is not a file URL is
    /// an error.
    std::optional<Error> createDirectoryAtURL(const URL& url);
    std::optional<Error> createDirectoryAtPath(const std::string& path);

    // Standard locations. They may not exist.
    [[nodiscard]] URL temporaryDirectory() const;
    /// Returns the locations of a standard directory according to the XDG and FHS standards, those of the
    /// user first. The list is empty if these standards have no such directory. The user's documents
    /// directory is always defined.
    [[nodiscard]] std::vector<URL> URLsForDirectory(SearchPathDirectory directory,
                                                    SearchPathDomain inDomains) const;
    /// Returns the directory `group` in the user's data directory, which programs of the same maker share,
    /// and creates it if it is missing. Returns no value for a user without a home directory.
    [[nodiscard]] std::optional<URL>
    containerURLForSecurityApplicationGroupIdentifier(std::string_view group) const;

  private:
    FileManagerDelegate* _delegate = nullptr;
};

} // namespace platform
