// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/DirectoryListing.hpp"
#include "platform/foundation/detail/DirectoryStack.hpp"
#include "platform/foundation/detail/PathLocation.hpp"
#include "platform/foundation/detail/fileCopy.hpp"
#include "platform/foundation/detail/fileErrors.hpp"
#include "platform/foundation/detail/itemOperations.hpp"

#include <cerrno>
#include <deque>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::detail {
namespace {

bool isOutOfDescriptors(int error) {
    return error == EMFILE || error == ENFILE;
}

class TreeTransfer {
  public:
    TreeTransfer(std::string from, std::string to, Transfer how, const Questions& questions)
        : _from(std::move(from))
        , _to(std::move(to))
        , _how(how)
        , _questions(questions) {}

    std::optional<Error> run() {
        const ParentAndName source = splitPath(_from);
        const ParentAndName target = splitPath(_to);
        if (source.name.empty() || target.name.empty()) return failure(EINVAL, "");
        int error = 0;
        const Descriptor sourceParent = openDirectory(source.parent, error);
        if (error != 0) return failure(error, "");
        const Descriptor targetParent = openDirectory(target.parent, error);
        if (error != 0) return failure(error, "");
        FileStatus status;
        error = readStatus(sourceParent.get(), source.name.c_str(), AT_SYMLINK_NOFOLLOW, status);
        if (error != 0) return failure(error, "");
        if (!may("")) return std::nullopt;
        if (!status.isDirectory()) {
            error = transferFile(sourceParent.get(), source.name.c_str(), status, targetParent.get(),
                                 target.name.c_str());
            return error == 0 ? std::nullopt : ended(error, "");
        }
        return transferDirectory(sourceParent.get(), source.name, status, targetParent.get(), target.name);
    }

  private:
    struct Level {
        DirectoryListing listing;
        FileStatus status;
    };

    std::optional<Error> transferDirectory(int sourceParent, const std::string& sourceName,
                                           const FileStatus& status, int targetParent,
                                           const std::string& targetName) {
        constexpr int HowToOpen = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;
        Descriptor from(::openat(sourceParent, sourceName.c_str(), HowToOpen));
        if (!from) return ended(errno, "");
        if (::mkdirat(targetParent, targetName.c_str(), 0700) != 0) return ended(errno, "");
        Descriptor to(::openat(targetParent, targetName.c_str(), HowToOpen));
        if (!to || readStatus(to.get(), "", AT_EMPTY_PATH, _targetRoot) != 0) return ended(errno, "");
        auto failed = transferContents(DirectoryStack(std::move(from), absolutePath(_from)),
                                       DirectoryStack(std::move(to), absolutePath(_to)), status);
        // Half a tree is not a copy.
        if (failed) (void)removeTree(_to, {});
        return failed;
    }

    std::optional<Error> transferContents(DirectoryStack from, DirectoryStack to, const FileStatus& status) {
        _levels.emplace_back().status = status;
        _levels.back().listing.read(from.descriptor());
        std::string prefix;
        while (true) {
            Level& level = _levels[from.depth() - 1];
            if (level.listing.advance()) {
                const char* name = level.listing.name();
                if (_questions.should && !may(joined(prefix, name))) continue;
                const int error = transferItem(from, to, name);
                if (error == Entered) {
                    prefix = joined(prefix, name);
                } else if (error != 0) {
                    if (auto failed = ended(error, joined(prefix, name))) return failed;
                }
                continue;
            }
            copyMetadata(from.descriptor(), level.status, to.descriptor());
            if (from.depth() == 1) return std::nullopt;
            from.leave();
            to.leave();
            prefix.resize(prefix.rfind('/') == std::string::npos ? 0 : prefix.rfind('/'));
        }
    }

    static constexpr int Entered = -1;

    int transferItem(DirectoryStack& from, DirectoryStack& to, const char* name) {
        FileStatus status;
        if (const int error = readStatus(from.descriptor(), name, AT_SYMLINK_NOFOLLOW, status); error != 0)
            return error == ENOENT ? 0 : error;        // gone meanwhile: not a part of what is copied
        if (status.isSame(_targetRoot)) return EINVAL; // a directory has no room for its own copy
        int error = 0;
        do {
            error = status.isDirectory()
                        ? enterBoth(from, to, name, status)
                        : transferFile(from.descriptor(), name, status, to.descriptor(), name);
        } while (isOutOfDescriptors(error) && (from.giveUpOutermost() || to.giveUpOutermost()));
        return error;
    }

    int enterBoth(DirectoryStack& from, DirectoryStack& to, const char* name, const FileStatus& status) {
        if (const int error = from.enter(name); error != 0) return error;
        int error = 0;
        if (::mkdirat(to.descriptor(), name, 0700) != 0 && !(errno == EEXIST && _isRetry)) error = errno;
        if (error == 0) error = to.enter(name);
        if (error != 0) {
            from.leave();
            _isRetry = isOutOfDescriptors(error);
            return error;
        }
        _isRetry = false;
        if (_levels.size() < from.depth()) _levels.emplace_back();
        Level& inner = _levels[from.depth() - 1];
        inner.status = status;
        inner.listing.read(from.descriptor());
        return Entered;
    }

    int transferFile(int from, const char* fromName, const FileStatus& status, int to,
                     const char* toName) const {
        if (_how == Transfer::Copy) return copyFile(from, fromName, status, to, toName);
        return ::linkat(from, fromName, to, toName, 0) == 0 ? 0 : errno;
    }

    bool may(const std::string& subpath) const { return !_questions.should || _questions.should(subpath); }
    Error failure(int error, const std::string& subpath) const {
        return itemError(error, subpath.empty() ? _from : subpath,
                         _how == Transfer::Copy ? "copied" : "linked");
    }
    std::optional<Error> ended(int error, const std::string& subpath) const {
        Error what = failure(error, subpath);
        if (_questions.shouldProceed && _questions.shouldProceed(what, subpath)) return std::nullopt;
        return what;
    }

    std::string _from;
    std::string _to;
    Transfer _how;
    const Questions& _questions;
    FileStatus _targetRoot;
    std::deque<Level> _levels;
    bool _isRetry = false; // the directory was made before descriptors ran out
};

} // namespace

std::optional<Error> transferTree(const std::string& from, const std::string& to, Transfer how,
                                  const Questions& questions) {
    return TreeTransfer(from, to, how, questions).run();
}

} // namespace platform::detail
