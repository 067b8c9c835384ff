// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/DirectoryEnumerator.hpp"

#include "platform/foundation/detail/AccessRights.hpp"
#include "platform/foundation/detail/DirectoryStack.hpp"
#include "platform/foundation/detail/PathLocation.hpp"
#include "platform/foundation/detail/fileErrors.hpp"
#include "platform/foundation/detail/itemOperations.hpp"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>

namespace platform {

using detail::AccessRights;
using detail::DirectoryStack;
using detail::FileStatus;
using detail::Rights;

class DirectoryEnumerator::Implementation {
  public:
    Implementation(Descriptor root, std::string path)
        : _path(std::move(path))
        , _stack(std::move(root)) {
        _levels.emplace_back();
        list();
    }

    std::optional<std::string_view> nextObject() {
        if (_mayDescend) descend();
        _itemStatus.reset();
        _mayDescend = false;
        while (!_stack.listing().advance()) {
            if (_stack.depth() == 1) return std::nullopt;
            _stack.leave();
        }
        _subpath.resize(level().prefixLength);
        _subpath += _stack.listing().name();
        _mayDescend = isDirectory();
        return _subpath;
    }

    std::int64_t depth() const noexcept { return static_cast<std::int64_t>(_stack.depth()); }
    std::size_t siblingCount() const noexcept { return _stack.listing().count(); }

    std::optional<FileAttributes> directoryAttributes() const {
        if (_stack.depth() > 1) return std::nullopt; // only available before the walk descends
        FileStatus status;
        if (detail::readStatus(_stack.descriptor(), "", AT_EMPTY_PATH, status) != 0) return std::nullopt;
        return FileAttributes(status);
    }

    FileFacts facts() {
        FileFacts facts;
        const int directory = _stack.descriptor();
        const char* name = _stack.listing().name();
        if (const int error = readItemStatus(); error != 0) {
            facts.error = detail::attributesError(error, name);
            return facts;
        }
        facts.attributes = FileAttributes(*_itemStatus);
        facts.isDeletable = mayRemoveItem();
        FileStatus target;
        if (_itemStatus->isLink() && detail::readStatus(directory, name, 0, target) != 0) return facts;
        const FileStatus& status = _itemStatus->isLink() ? target : *_itemStatus;
        facts.exists = true;
        facts.isDirectory = status.isDirectory();
        const Rights rights = _access.rightsTo(directory, name, status);
        facts.isReadable = rights.isReadable;
        facts.isWritable = rights.isWritable;
        facts.isExecutable = rights.isExecutable;
        return facts;
    }

    std::optional<Error> removeItem(const std::string& path, const detail::Questions& questions) {
        // If a directory is not removed completely, the walk continues with what remains in it.
        auto failed = detail::removeItem(_stack, _stack.listing().name(), path, questions);
        _itemStatus.reset();
        return failed;
    }
    const std::vector<Error>& readErrors() const noexcept { return _readErrors; }

  private:
    struct Level {
        std::size_t prefixLength = 0; // length of the subpath before the item's name
        std::optional<FileStatus> status;
        std::optional<Rights> rights;
    };
    Level& level() noexcept { return _levels[_stack.depth() - 1]; }

    void descend() {
        if (_stack.enter(_stack.listing().name()) != 0) return;
        if (_levels.size() < _stack.depth()) _levels.emplace_back();
        Level& inner = level();
        inner.prefixLength = _subpath.size() + 1;
        inner.status = _itemStatus; // empty if nobody has asked for it
        inner.rights.reset();
        list();
        _subpath += '/';
    }

    // `_subpath` must be the subpath of the innermost directory.
    void list() {
        const int error = _stack.list();
        if (error == 0) return;
        _readErrors.push_back(detail::readingError(error, _subpath.empty() ? _path : _path + "/" + _subpath));
    }

    bool isDirectory() {
        const unsigned char type = _stack.listing().type();
        if (type != DT_UNKNOWN) return type == DT_DIR;
        return readItemStatus() == 0 && _itemStatus->isDirectory();
    }

    int readItemStatus() {
        if (_itemStatus) return 0;
        if (_stack.descriptor() < 0) return ENOENT;
        FileStatus status;
        const int error =
            detail::readStatus(_stack.descriptor(), _stack.listing().name(), AT_SYMLINK_NOFOLLOW, status);
        if (error == 0) _itemStatus = status;
        return error;
    }

    bool mayRemoveItem() {
        Level& parent = level();
        if (!parent.status) {
            FileStatus status;
            if (detail::readStatus(_stack.descriptor(), "", AT_EMPTY_PATH, status) != 0) return false;
            parent.status = status;
        }
        if (!parent.rights) parent.rights = _access.rightsTo(_stack.descriptor(), ".", *parent.status);
        return _access.mayRemove(*_itemStatus, *parent.status, *parent.rights);
    }

    std::string _path; // path of the root
    AccessRights _access;
    DirectoryStack _stack;
    std::vector<Level> _levels; // never shorter than the depth of `_stack`
    std::string _subpath;       // subpath of the item that was returned last
    std::optional<FileStatus> _itemStatus;
    bool _mayDescend = false;
    std::vector<Error> _readErrors;
};

std::shared_ptr<DirectoryEnumerator> DirectoryEnumerator::open(const std::string& path) {
    int error = 0;
    Descriptor root = detail::openDirectory(path, error);
    if (!root) return nullptr;
    return std::shared_ptr<DirectoryEnumerator>(
        new DirectoryEnumerator(std::make_unique<Implementation>(std::move(root), path)));
}

DirectoryEnumerator::DirectoryEnumerator(std::unique_ptr<Implementation> implementation)
    : _implementation(std::move(implementation)) {}
DirectoryEnumerator::~DirectoryEnumerator() = default;

std::optional<std::string_view> DirectoryEnumerator::nextObject() {
    return _implementation->nextObject();
}
std::int64_t DirectoryEnumerator::level() const noexcept {
    return _implementation->depth();
}
std::optional<FileAttributes> DirectoryEnumerator::directoryAttributes() const {
    return _implementation->directoryAttributes();
}
FileFacts DirectoryEnumerator::facts() {
    return _implementation->facts();
}
std::size_t DirectoryEnumerator::siblingCount() const noexcept {
    return _implementation->siblingCount();
}
const std::vector<Error>& DirectoryEnumerator::readErrors() const noexcept {
    return _implementation->readErrors();
}
std::optional<Error> DirectoryEnumerator::removeItem(const std::string& path,
                                                     const detail::Questions& questions) {
    return _implementation->removeItem(path, questions);
}

} // namespace platform
