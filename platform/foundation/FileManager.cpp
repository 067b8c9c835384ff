// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/FileManager.hpp"

#include "platform/foundation/detail/AccessRights.hpp"
#include "platform/foundation/detail/DirectoryListing.hpp"
#include "platform/foundation/detail/FileStatus.hpp"
#include "platform/foundation/detail/PathLocation.hpp"
#include "platform/foundation/detail/fileErrors.hpp"

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>

namespace platform {
namespace {

using detail::FileStatus;
using detail::PathLocation;

int readStatusAtPath(const std::string& path, int flags, FileStatus& status) {
    const PathLocation location(path);
    if (location.error() != 0) return location.error();
    return detail::readStatus(location.directory(), location.rest(), flags, status);
}

bool mayAccessPath(const std::string& path, int how) {
    const PathLocation location(path);
    return location.error() == 0 && detail::mayAccess(location.directory(), location.rest(), how);
}

} // namespace

FileManager& FileManager::defaultManager() {
    static FileManager manager;
    return manager;
}

bool FileManager::changeCurrentDirectoryPath(const std::string& path) {
    const PathLocation location(path);
    if (location.error() != 0) return false;
    if (location.directory() == AT_FDCWD) return ::chdir(location.rest()) == 0;
    const Descriptor directory(
        ::openat(location.directory(), location.rest(), O_PATH | O_DIRECTORY | O_CLOEXEC));
    return directory && ::fchdir(directory.get()) == 0;
}

std::string FileManager::currentDirectoryPath() const {
    std::error_code ignored;
    return std::filesystem::current_path(ignored).string();
}

bool FileManager::fileExistsAtPath(const std::string& path) const {
    FileStatus status;
    return readStatusAtPath(path, 0, status) == 0;
}

bool FileManager::fileExistsAtPath(const std::string& path, bool& isDirectory) const {
    FileStatus status;
    const bool exists = readStatusAtPath(path, 0, status) == 0;
    isDirectory = exists && status.isDirectory();
    return exists;
}

bool FileManager::isReadableFileAtPath(const std::string& path) const {
    return mayAccessPath(path, R_OK);
}
bool FileManager::isWritableFileAtPath(const std::string& path) const {
    return mayAccessPath(path, W_OK);
}
bool FileManager::isExecutableFileAtPath(const std::string& path) const {
    return mayAccessPath(path, X_OK);
}

bool FileManager::isDeletableFileAtPath(const std::string& path) const {
    detail::ParentAndName place = detail::splitPath(path);
    if (place.name == "." || place.name == "..") {
        std::error_code error;
        place = detail::splitPath(std::filesystem::canonical(path, error).string());
        if (error) return false;
    }
    if (place.name.empty()) return false; // "/" has no parent
    FileStatus item;
    FileStatus parent;
    if (readStatusAtPath(place.parent, 0, parent) != 0) return false;
    if (readStatusAtPath(place.parent + "/" + place.name, AT_SYMLINK_NOFOLLOW, item) != 0) return false;
    return detail::AccessRights().mayRemove(
        item, parent, {true, mayAccessPath(place.parent, W_OK), mayAccessPath(place.parent, X_OK)});
}

Result<FileAttributes> FileManager::attributesOfItemAtPath(const std::string& path) const {
    FileStatus status;
    if (const int error = readStatusAtPath(path, AT_SYMLINK_NOFOLLOW, status); error != 0) {
        return detail::attributesError(error, path);
    }
    return FileAttributes(status);
}

std::shared_ptr<DirectoryEnumerator> FileManager::enumeratorAtPath(const std::string& path) const {
    return DirectoryEnumerator::open(path);
}

Result<std::vector<std::string>> FileManager::contentsOfDirectoryAtPath(const std::string& path) const {
    int error = 0;
    const Descriptor directory = detail::openDirectory(path, error);
    detail::DirectoryListing listing;
    if (error == 0) error = listing.read(directory.get());
    if (error != 0) return detail::itemError(error, path, "opened");
    std::vector<std::string> names;
    names.reserve(listing.count());
    while (listing.advance()) names.emplace_back(listing.name());
    return names;
}

Result<std::vector<std::string>> FileManager::subpathsOfDirectoryAtPath(const std::string& path) const {
    const auto enumerator = enumeratorAtPath(path);
    if (!enumerator) {
        int error = 0;
        (void)detail::openDirectory(path, error);
        return detail::itemError(error, path, "opened");
    }
    std::vector<std::string> subpaths;
    while (const auto subpath = enumerator->nextObject()) subpaths.emplace_back(*subpath);
    if (!enumerator->readErrors().empty()) return enumerator->readErrors().front();
    return subpaths;
}

std::optional<std::vector<std::string>> FileManager::subpathsAtPath(const std::string& path) const {
    auto subpaths = subpathsOfDirectoryAtPath(path);
    if (!subpaths) return std::nullopt;
    return std::move(subpaths.value());
}

std::optional<Error> FileManager::createDirectoryAtPath(const std::string& path) {
    std::error_code error;
    std::filesystem::create_directories(path, error);
    if (error) return detail::itemError(error.value(), path, "created");
    return std::nullopt;
}

} // namespace platform
