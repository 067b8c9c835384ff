// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The file manager's operations that change files, and the delegate's functions that each of them calls.
#include "platform/foundation/FileManager.hpp"
#include "platform/foundation/detail/PathLocation.hpp"
#include "platform/foundation/detail/fileErrors.hpp"
#include "platform/foundation/detail/itemOperations.hpp"

#include <cerrno>
#include <fcntl.h>
#include <stdio.h> // renameat2

namespace platform {
namespace {

using detail::Questions;

using Delegate = FileManagerDelegate;
using Path = std::string;

// The delegate's functions for one operation, in their forms with paths and with URLs.
struct PairQuestions {
    bool (Delegate::*shouldPath)(FileManager&, const Path&, const Path&);
    bool (Delegate::*proceedPath)(FileManager&, const Error&, const Path&, const Path&);
    bool (Delegate::*shouldURL)(FileManager&, const URL&, const URL&);
    bool (Delegate::*proceedURL)(FileManager&, const Error&, const URL&, const URL&);
};

constexpr PairQuestions Copying = {&Delegate::fileManagerShouldCopyItemAtPath,
                                   &Delegate::fileManagerShouldProceedAfterErrorCopyingItemAtPath,
                                   &Delegate::fileManagerShouldCopyItemAtURL,
                                   &Delegate::fileManagerShouldProceedAfterErrorCopyingItemAtURL};
constexpr PairQuestions Linking = {&Delegate::fileManagerShouldLinkItemAtPath,
                                   &Delegate::fileManagerShouldProceedAfterErrorLinkingItemAtPath,
                                   &Delegate::fileManagerShouldLinkItemAtURL,
                                   &Delegate::fileManagerShouldProceedAfterErrorLinkingItemAtURL};
constexpr PairQuestions Moving = {
    &Delegate::fileManagerShouldMoveItemAtPath, &Delegate::fileManagerShouldProceedAfterErrorMovingItemAtPath,
    &Delegate::fileManagerShouldMoveItemAtURL, &Delegate::fileManagerShouldProceedAfterErrorMovingItemAtURL};

std::string below(const std::string& root, const std::string& subpath) {
    return subpath.empty() ? root : root + "/" + subpath;
}

Questions byPath(FileManager& manager, const PairQuestions& which, const Path& from, const Path& to) {
    if (manager.delegate() == nullptr) return {};
    return {[=, &manager](const std::string& subpath) {
                Delegate* delegate = manager.delegate();
                return delegate == nullptr ||
                       (delegate->*which.shouldPath)(manager, below(from, subpath), below(to, subpath));
            },
            [=, &manager](const Error& error, const std::string& subpath) {
                Delegate* delegate = manager.delegate();
                return delegate != nullptr && (delegate->*which.proceedPath)(
                                                  manager, error, below(from, subpath), below(to, subpath));
            }};
}

Questions byURL(FileManager& manager, const PairQuestions& which, const Path& from, const Path& to) {
    if (manager.delegate() == nullptr) return {};
    const auto url = [](const Path& root, const std::string& subpath) {
        return URL::fileURLWithPath(below(root, subpath));
    };
    return {[=, &manager](const std::string& subpath) {
                Delegate* delegate = manager.delegate();
                return delegate == nullptr ||
                       (delegate->*which.shouldURL)(manager, url(from, subpath), url(to, subpath));
            },
            [=, &manager](const Error& error, const std::string& subpath) {
                Delegate* delegate = manager.delegate();
                return delegate != nullptr &&
                       (delegate->*which.proceedURL)(manager, error, url(from, subpath), url(to, subpath));
            }};
}

Questions removingByURL(FileManager& manager, const Path& path) {
    if (manager.delegate() == nullptr) return {};
    return {[=, &manager](const std::string& subpath) {
                Delegate* delegate = manager.delegate();
                return delegate == nullptr || delegate->fileManagerShouldRemoveItemAtURL(
                                                  manager, URL::fileURLWithPath(below(path, subpath)));
            },
            [=, &manager](const Error& error, const std::string& subpath) {
                Delegate* delegate = manager.delegate();
                return delegate != nullptr && delegate->fileManagerShouldProceedAfterErrorRemovingItemAtURL(
                                                  manager, error, URL::fileURLWithPath(below(path, subpath)));
            }};
}

int rename(const Path& from, const Path& to) {
    const detail::PathLocation source(from);
    const detail::PathLocation target(to);
    if (source.error() != 0) return source.error();
    if (target.error() != 0) return target.error();
    return ::renameat2(source.directory(), source.rest(), target.directory(), target.rest(),
                       RENAME_NOREPLACE) == 0
               ? 0
               : errno;
}

// The delegate is asked only once, for the whole item, and not for the items below it.
std::optional<Error> move(FileManager& manager, const Path& from, const Path& to,
                          const Questions& questions) {
    if (questions.should && !questions.should("")) return std::nullopt;
    const int error = rename(from, to);
    if (error == 0) return std::nullopt;
    std::optional<Error> failed = detail::itemError(error, from, "moved");
    if (error == EXDEV || error == EINVAL || error == ENOSYS) {
        if (manager.fileExistsAtPath(to)) {
            failed = detail::itemError(EEXIST, from, "moved");
        } else {
            failed = detail::transferTree(from, to, detail::Transfer::Copy, {});
            if (!failed) failed = detail::removeTree(from, {});
        }
    }
    if (failed && questions.shouldProceed && questions.shouldProceed(*failed, "")) return std::nullopt;
    return failed;
}

std::optional<Error> notAFile(const URL& url, std::string_view participle) {
    return detail::itemError(EINVAL, url.absoluteString(), participle);
}

} // namespace

std::optional<Error> FileManager::removeItemAtPath(const std::string& path) {
    Questions questions;
    if (_delegate != nullptr) {
        questions = {[=, this](const std::string& subpath) {
                         return _delegate == nullptr ||
                                _delegate->fileManagerShouldRemoveItemAtPath(*this, below(path, subpath));
                     },
                     [=, this](const Error& error, const std::string& subpath) {
                         return _delegate != nullptr &&
                                _delegate->fileManagerShouldProceedAfterErrorRemovingItemAtPath(
                                    *this, error, below(path, subpath));
                     }};
    }
    return detail::removeTree(path, questions);
}

std::optional<Error> FileManager::removeItemAtURL(const URL& url) {
    if (!url.isFileURL()) return notAFile(url, "removed");
    return detail::removeTree(url.path(), removingByURL(*this, url.path()));
}

std::optional<Error> FileManager::removeItemAtURL(const URL& url, DirectoryEnumerator& enumerator) {
    return enumerator.removeItem(url.path(), removingByURL(*this, url.path()));
}

std::optional<Error> FileManager::copyItemAtPath(const std::string& path, const std::string& toPath) {
    return detail::transferTree(path, toPath, detail::Transfer::Copy, byPath(*this, Copying, path, toPath));
}

std::optional<Error> FileManager::copyItemAtURL(const URL& url, const URL& toURL) {
    if (!url.isFileURL()) return notAFile(url, "copied");
    if (!toURL.isFileURL()) return notAFile(toURL, "copied");
    return detail::transferTree(url.path(), toURL.path(), detail::Transfer::Copy,
                                byURL(*this, Copying, url.path(), toURL.path()));
}

std::optional<Error> FileManager::linkItemAtPath(const std::string& path, const std::string& toPath) {
    return detail::transferTree(path, toPath, detail::Transfer::Link, byPath(*this, Linking, path, toPath));
}

std::optional<Error> FileManager::linkItemAtURL(const URL& url, const URL& toURL) {
    if (!url.isFileURL()) return notAFile(url, "linked");
    if (!toURL.isFileURL()) return notAFile(toURL, "linked");
    return detail::transferTree(url.path(), toURL.path(), detail::Transfer::Link,
                                byURL(*this, Linking, url.path(), toURL.path()));
}

std::optional<Error> FileManager::moveItemAtPath(const std::string& path, const std::string& toPath) {
    return move(*this, path, toPath, byPath(*this, Moving, path, toPath));
}

std::optional<Error> FileManager::moveItemAtURL(const URL& url, const URL& toURL) {
    if (!url.isFileURL()) return notAFile(url, "moved");
    if (!toURL.isFileURL()) return notAFile(toURL, "moved");
    return move(*this, url.path(), toURL.path(), byURL(*this, Moving, url.path(), toURL.path()));
}

std::optional<Error> FileManager::createDirectoryAtURL(const URL& url) {
    if (!url.isFileURL()) return notAFile(url, "created");
    return createDirectoryAtPath(url.path());
}

} // namespace platform
