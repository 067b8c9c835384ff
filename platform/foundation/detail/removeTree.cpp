// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/DirectoryListing.hpp"
#include "platform/foundation/detail/DirectoryStack.hpp"
#include "platform/foundation/detail/FileStatus.hpp"
#include "platform/foundation/detail/PathLocation.hpp"
#include "platform/foundation/detail/fileErrors.hpp"
#include "platform/foundation/detail/itemOperations.hpp"

#include <cerrno>
#include <deque>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::detail {
namespace {

class Removal {
  public:
    Removal(std::string path, const Questions& questions)
        : _path(std::move(path))
        , _questions(questions) {}

    std::optional<Error> run() {
        const ParentAndName place = splitPath(_path);
        if (place.name.empty() || place.name == "." || place.name == "..") return failure(EINVAL, "");
        int error = 0;
        const Descriptor parent = openDirectory(place.parent, error);
        if (error != 0) return failure(error, "");
        FileStatus status;
        error = readStatus(parent.get(), place.name.c_str(), AT_SYMLINK_NOFOLLOW, status);
        if (error != 0) return failure(error, "");
        if (!may("")) return std::nullopt;
        if (status.isDirectory()) {
            Descriptor root(
                ::openat(parent.get(), place.name.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC));
            if (!root && ::unlinkat(parent.get(), place.name.c_str(), AT_REMOVEDIR) == 0) return std::nullopt;
            if (!root) return ended(errno, "");
            if (auto failed = removeContents(std::move(root))) return failed;
            if (_levels.front().keepsSomething) return std::nullopt;
        }
        if (::unlinkat(parent.get(), place.name.c_str(), status.isDirectory() ? AT_REMOVEDIR : 0) != 0)
            return ended(errno, "");
        return std::nullopt;
    }

  private:
    struct Level {
        DirectoryListing listing;
        bool keepsSomething = false; // by an answer; the directory then stays without being an error
    };

    std::optional<Error> removeContents(Descriptor root) {
        DirectoryStack stack(std::move(root), absolutePath(_path));
        _levels.emplace_back().listing.read(stack.descriptor());
        std::string prefix;
        while (true) {
            Level& level = _levels[stack.depth() - 1];
            if (level.listing.advance()) {
                const char* name = level.listing.name();
                const std::string subpath = _questions.should ? joined(prefix, name) : std::string();
                if (!may(subpath)) {
                    level.keepsSomething = true;
                    continue;
                }
                const int error = isDirectory(stack, level) ? enter(stack, name) : removeFile(stack, name);
                if (error == Entered) {
                    prefix = joined(prefix, name);
                } else if (error != 0) {
                    if (auto failed = ended(error, joined(prefix, name))) return failed;
                    level.keepsSomething = true;
                }
                continue;
            }
            if (stack.depth() == 1) return std::nullopt;
            const bool keeps = level.keepsSomething;
            stack.leave();
            Level& outer = _levels[stack.depth() - 1];
            if (keeps) {
                outer.keepsSomething = true;
            } else if (::unlinkat(stack.descriptor(), outer.listing.name(), AT_REMOVEDIR) != 0 &&
                       errno != ENOENT) {
                if (auto failed = ended(errno, prefix)) return failed;
                outer.keepsSomething = true;
            }
            prefix.resize(prefix.rfind('/') == std::string::npos ? 0 : prefix.rfind('/'));
        }
    }

    static constexpr int Entered = -1;

    static bool isDirectory(const DirectoryStack& stack, const Level& level) {
        if (level.listing.type() != DT_UNKNOWN) return level.listing.type() == DT_DIR;
        FileStatus status;
        return readStatus(stack.descriptor(), level.listing.name(), AT_SYMLINK_NOFOLLOW, status) == 0 &&
               status.isDirectory();
    }

    static int removeFile(const DirectoryStack& stack, const char* name) {
        // What somebody else removed meanwhile is removed.
        return ::unlinkat(stack.descriptor(), name, 0) == 0 || errno == ENOENT ? 0 : errno;
    }

    int enter(DirectoryStack& stack, const char* name) {
        const int error = stack.enter(name);
        if (error == ENOENT) return 0;
        if (error != 0) // unreadable, but perhaps empty
            return ::unlinkat(stack.descriptor(), name, AT_REMOVEDIR) == 0 ? 0 : error;
        if (_levels.size() < stack.depth()) _levels.emplace_back();
        Level& inner = _levels[stack.depth() - 1];
        inner.keepsSomething = false;
        inner.listing.read(stack.descriptor());
        return Entered;
    }

    bool may(const std::string& subpath) const { return !_questions.should || _questions.should(subpath); }
    Error failure(int error, const std::string& subpath) const {
        return itemError(error, subpath.empty() ? _path : subpath, "removed");
    }
    /// Give the error that ends the operation, or none when it is to go on.
    std::optional<Error> ended(int error, const std::string& subpath) const {
        Error what = failure(error, subpath);
        if (_questions.shouldProceed && _questions.shouldProceed(what, subpath)) return std::nullopt;
        return what;
    }

    std::string _path;
    const Questions& _questions;
    std::deque<Level> _levels;
};

} // namespace

std::optional<Error> removeTree(const std::string& path, const Questions& questions) {
    return Removal(path, questions).run();
}

} // namespace platform::detail
