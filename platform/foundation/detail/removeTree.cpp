// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/DirectoryStack.hpp"
#include "platform/foundation/detail/FileStatus.hpp"
#include "platform/foundation/detail/PathLocation.hpp"
#include "platform/foundation/detail/fileErrors.hpp"
#include "platform/foundation/detail/itemOperations.hpp"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace platform::detail {
namespace {

class Removal {
  public:
    /// Removes items from the innermost directory of `stack`. The destructor restores the depth of the stack.
    Removal(DirectoryStack& stack, const std::string& path, const Questions& questions)
        : _stack(stack)
        , _base(stack.depth())
        , _path(path)
        , _questions(questions) {}
    ~Removal() {
        while (_stack.depth() > _base) _stack.leave();
    }
    Removal(const Removal&) = delete;
    Removal& operator=(const Removal&) = delete;

    std::optional<Error> removeItem(const char* name) {
        FileStatus status;
        const int error = readStatus(_stack.descriptor(), name, AT_SYMLINK_NOFOLLOW, status);
        if (error != 0) return failure(error, "");
        if (!may(name)) return std::nullopt;
        auto failed = remove(name, status.isDirectory());
        while (!failed && _stack.depth() > _base) failed = step();
        return failed;
    }

    /// `made` must be sorted.
    void removeMade(const std::vector<std::uint64_t>& made) {
        _made = &made;
        (void)_stack.list(); // after an error, the names read so far can still be removed
        std::optional<Error> failed;
        while (!failed && (_stack.depth() > _base || !_stack.listing().isAtEnd())) failed = step();
    }

  private:
    std::optional<Error> step() {
        if (!_stack.listing().advance()) return leave();
        const char* name = _stack.listing().name();
        if (may(name)) return remove(name, _stack.standsOnDirectory());
        _keeps.back() = true;
        return std::nullopt;
    }

    // Removes a file, or enters a directory.
    std::optional<Error> remove(const char* name, bool isDirectory) {
        int error = 0;
        if (isDirectory) {
            error = enter(name);
        } else if (::unlinkat(_stack.descriptor(), name, 0) != 0 && errno != ENOENT) {
            error = errno; // an item that is already gone counts as removed
        }
        return error == 0 ? std::nullopt : ended(error, subpathOf(name));
    }

    int enter(const char* name) {
        const std::string subpath = subpathOf(name);
        int error = _stack.enter(name, Crossing::Refused);
        if (error == 0) {
            if (_made != nullptr) {
                ::fchmod(_stack.descriptor(), S_IRWXU); // its final mode may forbid reading or writing
            }
            error = _stack.list();
            if (error == 0) {
                _keeps.push_back(false);
                _prefix = subpath;
                return 0;
            }
            _stack.leave();
        }
        // The directory cannot be entered or read, or is a mount point. If it is empty, it can still be
        // removed.
        if (::unlinkat(_stack.descriptor(), name, AT_REMOVEDIR) == 0 || errno == ENOENT) return 0;
        return error == EXDEV ? errno : error;
    }

    std::optional<Error> leave() {
        const bool keeps = _keeps.back();
        const std::string subpath = _prefix;
        const std::string name = _stack.name();
        _keeps.pop_back();
        _stack.leave();
        _prefix.resize(_prefix.rfind('/') == std::string::npos ? 0 : _prefix.rfind('/'));
        if (keeps) {
            _keeps.back() = true;
        } else if (::unlinkat(_stack.descriptor(), name.c_str(), AT_REMOVEDIR) != 0 && errno != ENOENT) {
            return ended(errno, subpath);
        }
        return std::nullopt;
    }

    bool may(const char* name) const {
        if (_made == nullptr) return !_questions.should || _questions.should(subpathOf(name));
        FileStatus status;
        return readStatus(_stack.descriptor(), name, AT_SYMLINK_NOFOLLOW, status) == 0 &&
               std::binary_search(_made->begin(), _made->end(), status.fileNumber);
    }
    // Returns the subpath of an item, which is empty for the root of the operation.
    std::string subpathOf(const char* name) const {
        return _stack.depth() == _base ? std::string() : joined(_prefix, name);
    }
    Error failure(int error, const std::string& subpath) const {
        return itemError(error, subpath.empty() ? _path : subpath, "removed");
    }
    /// Returns the error that ends the operation, or no value if the operation continues.
    std::optional<Error> ended(int error, const std::string& subpath) {
        _keeps.back() = true;
        Error what = failure(error, subpath);
        if (_made != nullptr) return std::nullopt;
        if (_questions.shouldProceed && _questions.shouldProceed(what, subpath)) return std::nullopt;
        return what;
    }

    DirectoryStack& _stack;
    const std::size_t _base;
    const std::string& _path;
    const Questions& _questions;
    const std::vector<std::uint64_t>* _made = nullptr; // if not null, only these files are removed
    std::string _prefix;                               // the subpath of the innermost directory
    // For each level, whether an item in it is kept. Such a directory is kept too, which is not an error.
    std::vector<bool> _keeps = {false};
};

} // namespace

std::optional<Error> removeItem(DirectoryStack& stack, const std::string& name, const std::string& path,
                                const Questions& questions) {
    return Removal(stack, path, questions).removeItem(name.c_str());
}

std::optional<Error> removeTree(const std::string& path, const Questions& questions) {
    const ParentAndName place = splitPath(path);
    if (place.name.empty() || place.name == "." || place.name == "..") {
        return itemError(EINVAL, path, "removed");
    }
    int error = 0;
    Descriptor parent = openDirectory(place.parent, error);
    if (error != 0) return itemError(error, path, "removed");
    DirectoryStack stack(std::move(parent));
    return removeItem(stack, place.name, path, questions);
}

void removeMade(DirectoryStack& stack, std::vector<std::uint64_t> made) {
    std::sort(made.begin(), made.end());
    const std::string noPath;
    const Questions none;
    Removal(stack, noPath, none).removeMade(made);
}

} // namespace platform::detail
