// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The system's file operations. Paths are bytes of any length; relative ones start at the process's current
// directory. Any thread; a manager's delegate is set before its operations run.
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

/// The standard directories, with their numbers.
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

/// Whose directories: a bit mask.
enum class SearchPathDomain : unsigned { User = 1, Local = 2, Network = 4, System = 8, All = 0xFFFF };

class FileManager {
  public:
    /// Returns the process's file manager.
    [[nodiscard]] static FileManager& defaultManager();

    /// Sets the delegate that answers this manager's questions; null for none. It must be reset before the
    /// delegate is destroyed.
    void setDelegate(FileManagerDelegate* delegate) noexcept { _delegate = delegate; }
    [[nodiscard]] FileManagerDelegate* delegate() const noexcept { return _delegate; }

    // The current directory, which is the process's.
    bool changeCurrentDirectoryPath(const std::string& path);
    /// Returns the absolute path of the current directory; empty when it was removed.
    [[nodiscard]] std::string currentDirectoryPath() const;

    // Questions about one item. They follow links, except the last two.
    [[nodiscard]] bool fileExistsAtPath(const std::string& path) const;
    bool fileExistsAtPath(const std::string& path, bool& isDirectory) const;
    [[nodiscard]] bool isReadableFileAtPath(const std::string& path) const;
    [[nodiscard]] bool isWritableFileAtPath(const std::string& path) const;
    [[nodiscard]] bool isExecutableFileAtPath(const std::string& path) const;
    /// Returns whether the item's directory is writable and searchable and its sticky bit, if set, lets the
    /// process remove the item.
    [[nodiscard]] bool isDeletableFileAtPath(const std::string& path) const;
    /// Creates the view: from the interface description, if there is one.
    [[nodiscard]] Result<FileAttributes> attributesOfItemAtPath(const std::string& path) const;

    // What a directory contains, in byte order.
    /// Returns a walk over everything below `path`; null when it cannot be opened.
    [[nodiscard]] std::shared_ptr<DirectoryEnumerator> enumeratorAtPath(const std::string& path) const;
    [[nodiscard]] Result<std::vector<std::string>> contentsOfDirectoryAtPath(const std::string& path) const;
    [[nodiscard]] Result<std::vector<std::string>> subpathsOfDirectoryAtPath(const std::string& path) const;
    [[nodiscard]] std::optional<std::vector<std::string>> subpathsAtPath(const std::string& path) const;

    // Changes. Each asks the delegate before every item and after every error, returns the error that ended
    // it, or none, never leaves the tree through a link, and does not enter anything that is mounted below
    // the item.
    /// Removes a file, a link or a whole directory, which must not be mounted itself.
    std::optional<Error> removeItemAtURL(const URL& url);
    /// Does the same with the item that `enumerator` returned last, in the directory that it holds open,
    /// wherever that has been moved. `url` names the item to the delegate and in errors.
    std::optional<Error> removeItemAtURL(const URL& url, DirectoryEnumerator& enumerator);
    std::optional<Error> removeItemAtPath(const std::string& path);
    /// Copies a file or a whole directory; an existing destination is an error. A file appears at its
    /// destination complete or not at all; what was copied of a directory is removed if the copy fails.
    /// Permissions, dates and extended attributes are copied, the owner is not.
    std::optional<Error> copyItemAtURL(const URL& url, const URL& toURL);
    std::optional<Error> copyItemAtPath(const std::string& path, const std::string& toPath);
    /// Renames, or copies and removes across file systems; an existing destination is an error.
    std::optional<Error> moveItemAtURL(const URL& url, const URL& toURL);
    std::optional<Error> moveItemAtPath(const std::string& path, const std::string& toPath);
    /// Creates hard links to a file, or to every file of a directory in new directories.
    std::optional<Error> linkItemAtURL(const URL& url, const URL& toURL);
    std::optional<Error> linkItemAtPath(const std::string& path, const std::string& toPath);
    /// Creates a directory and its parents; an existing one is not an error. A URL that is not a file URL is.
    std::optional<Error> createDirectoryAtURL(const URL& url);
    std::optional<Error> createDirectoryAtPath(const std::string& path);

    // Standard locations. They need not exist.
    [[nodiscard]] URL temporaryDirectory() const;
    /// Returns the locations of a standard directory according to the desktop's standards, the user's first;
    /// none if there is no counterpart. The user's documents always exist.
    [[nodiscard]] std::vector<URL> URLsForDirectory(SearchPathDirectory directory,
                                                    SearchPathDomain inDomains) const;
    /// Returns the folder that the maker's programs share, in the user's data directory, and creates it if it
    /// is missing. Absent for a user without such a directory.
    [[nodiscard]] std::optional<URL>
    containerURLForSecurityApplicationGroupIdentifier(std::string_view group) const;

  private:
    FileManagerDelegate* _delegate = nullptr;
};

} // namespace platform
