// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/DirectoryStack.hpp"
#include "platform/foundation/detail/PathLocation.hpp"
#include "platform/foundation/detail/fileCopy.hpp"
#include "platform/foundation/detail/fileErrors.hpp"
#include "platform/foundation/detail/itemOperations.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::detail {
namespace {

class TreeTransfer {
  public:
    /// Copies or links from the innermost directory of `from` to that of `to`. `path` is used in error texts.
    TreeTransfer(DirectoryStack from, DirectoryStack to, const std::string& path, Transfer how,
                 const Questions& questions)
        : _from(std::move(from))
        , _to(std::move(to))
        , _path(path)
        , _how(how)
        , _questions(questions) {}

    std::optional<Error> run(const char* name, const char* newName) {
        FileStatus status;
        if (const int error = readStatus(_from.descriptor(), name, AT_SYMLINK_NOFOLLOW, status); error != 0) {
            return failure(error, "");
        }
        if (!may("")) return std::nullopt;
        std::optional<Error> failed;
        if (const int error = transferItem(name, "", status, newName); error != 0) failed = ended(error, "");
        while (!failed && _from.depth() > 1) failed = step();
        if (failed) takeAway(newName);
        return failed;
    }

  private:
    std::optional<Error> step() {
        DirectoryListing& listing = _from.listing();
        if (!listing.advance()) {
            copyMetadata(_from.descriptor(), _statuses.back(), _to.descriptor());
            _statuses.pop_back();
            _from.leave();
            _to.leave();
            _prefix.resize(_prefix.rfind('/') == std::string::npos ? 0 : _prefix.rfind('/'));
            return std::nullopt;
        }
        const char* name = listing.name();
        const std::string subpath = joined(_prefix, name);
        if (!may(subpath)) return std::nullopt;
        FileStatus status;
        int error = readStatus(_from.descriptor(), name, AT_SYMLINK_NOFOLLOW, status);
        if (error == ENOENT) return std::nullopt; // removed meanwhile
        if (error == 0) {                         // a directory cannot hold its own copy
            error = status.isSame(_targetRoot) ? EINVAL : transferItem(name, subpath, status, name);
        }
        return error == 0 ? std::nullopt : ended(error, subpath);
    }

    // Copies or links a file, or enters a directory. Returns 0 or the error number. A directory is entered
    // even if its names could not be read completely.
    int transferItem(const char* name, const std::string& subpath, const FileStatus& status,
                     const char* newName) {
        if (status.isDirectory()) return enterBoth(name, subpath, status, newName);
        int error = 0;
        do {
            error = transferFile(name, status, newName);
        } while (isOutOfDescriptors(error) && (_from.giveUpOutermost() || _to.giveUpOutermost()));
        FileStatus made;
        if (error == 0) error = rememberMade(newName, made);
        return error;
    }

    int transferFile(const char* name, const FileStatus& status, const char* newName) const {
        const int from = _from.descriptor();
        const int to = _to.descriptor();
        if (_how == Transfer::Copy) return copyFile(from, name, status, to, newName);
        return ::linkat(from, name, to, newName, 0) == 0 ? 0 : errno;
    }

    int enterBoth(const char* name, const std::string& subpath, const FileStatus& status,
                  const char* newName) {
        // The root of the operation may be on another device than its parent directory.
        const Crossing crossing = _from.depth() == 1 ? Crossing::Allowed : Crossing::Refused;
        int error = enterOne(_from, name, crossing, _to);
        if (error != 0) return error;
        FileStatus made;
        if (::mkdirat(_to.descriptor(), newName, S_IRWXU) != 0) error = errno;
        if (error == 0) error = rememberMade(newName, made);
        if (error == 0) error = enterOne(_to, newName, Crossing::Refused, _from);
        if (error != 0) {
            _from.leave();
            return error;
        }
        _statuses.push_back(status);
        _prefix = subpath;
        if (_to.depth() == 2) _targetRoot = made;
        FileStatus entered;
        error = readStatus(_to.descriptor(), "", AT_EMPTY_PATH, entered);
        if (error == 0 && !entered.isSame(made)) error = ESTALE; // replaced meanwhile
        return error != 0 ? error : _from.list();
    }

    static int enterOne(DirectoryStack& stack, const char* name, Crossing crossing, DirectoryStack& other) {
        while (true) {
            const int error = stack.enter(name, crossing);
            if (!isOutOfDescriptors(error) || !other.giveUpOutermost()) return error;
        }
    }

    int rememberMade(const char* newName, FileStatus& made) {
        const int error = readStatus(_to.descriptor(), newName, AT_SYMLINK_NOFOLLOW, made);
        if (error == 0) _made.push_back(made.fileNumber);
        return error;
    }

    // Removes a partial copy. It checks the file number, because other programs may have replaced the
    // directory.
    void takeAway(const char* newName) {
        if (_made.empty()) return;
        while (_from.giveUpOutermost()) {
        }
        const std::uint64_t root = _made.front();
        while (_to.depth() > 2) _to.leave();
        if (_to.depth() == 2) {
            removeMade(_to, std::move(_made));
            _to.leave();
        }
        FileStatus status;
        if (readStatus(_to.descriptor(), newName, AT_SYMLINK_NOFOLLOW, status) == 0 && status.isDirectory() &&
            status.fileNumber == root) {
            ::unlinkat(_to.descriptor(), newName, AT_REMOVEDIR);
        }
    }

    bool may(const std::string& subpath) const { return !_questions.should || _questions.should(subpath); }
    Error failure(int error, const std::string& subpath) const {
        return itemError(error, subpath.empty() ? _path : subpath,
                         _how == Transfer::Copy ? "copied" : "linked");
    }
    std::optional<Error> ended(int error, const std::string& subpath) const {
        Error what = failure(error, subpath);
        if (_questions.shouldProceed && _questions.shouldProceed(what, subpath)) return std::nullopt;
        return what;
    }

    DirectoryStack _from;
    DirectoryStack _to;
    const std::string& _path;
    Transfer _how;
    const Questions& _questions;
    FileStatus _targetRoot;
    std::vector<FileStatus> _statuses; // status of each source directory that has been entered
    std::string _prefix;               // subpath of the innermost directory
    std::vector<std::uint64_t> _made;  // file numbers of all created items, which are on one device
};

} // namespace

std::optional<Error> transferTree(const std::string& from, const std::string& to, Transfer how,
                                  const Questions& questions) {
    const ParentAndName source = splitPath(from);
    const ParentAndName target = splitPath(to);
    const auto failure = [&](int error) {
        return itemError(error, from, how == Transfer::Copy ? "copied" : "linked");
    };
    if (source.name.empty() || target.name.empty()) return failure(EINVAL);
    int error = 0;
    Descriptor sourceParent = openDirectory(source.parent, error);
    if (error != 0) return failure(error);
    Descriptor targetParent = openDirectory(target.parent, error);
    if (error != 0) return failure(error);
    return TreeTransfer(DirectoryStack(std::move(sourceParent)), DirectoryStack(std::move(targetParent)),
                        from, how, questions)
        .run(source.name.c_str(), target.name.c_str());
}

} // namespace platform::detail
