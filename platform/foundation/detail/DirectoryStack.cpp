// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/DirectoryStack.hpp"

#include "platform/foundation/detail/FileStatus.hpp"

#include <cerrno>
#include <dirent.h>
#include <fcntl.h>

namespace platform::detail {
namespace {

constexpr int HowToOpen = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// The limit of a process is often 1,024 descriptors, and other code needs some of them.
constexpr std::size_t MostOpen = 256;

} // namespace

bool isOutOfDescriptors(int error) noexcept {
    return error == EMFILE || error == ENFILE;
}

DirectoryStack::DirectoryStack(Descriptor root) {
    _top = &_levels.emplace_back();
    _top->descriptor = std::move(root);
}

int DirectoryStack::findPlace(Level& level) {
    if (level.place.isKnown) return 0;
    FileStatus status;
    const int error = readStatus(level.descriptor.get(), "", AT_EMPTY_PATH, status);
    if (error == 0) level.place = {status.device, status.mount, status.fileNumber, true};
    return error;
}

bool DirectoryStack::isAt(const Descriptor& opened, const Level& level) {
    FileStatus status;
    return opened && readStatus(opened.get(), "", AT_EMPTY_PATH, status) == 0 &&
           status.device == level.place.device && status.fileNumber == level.place.fileNumber;
}

bool DirectoryStack::giveUpOutermost() {
    for (; _firstOpen + 1 < _depth; ++_firstOpen) {
        Level& level = _levels[_firstOpen];
        if (!level.descriptor || findPlace(level) != 0) continue;
        level.descriptor.close();
        ++_firstOpen;
        return true;
    }
    return false;
}

int DirectoryStack::openNext(const char* name, Descriptor& opened) {
    if (descriptor() < 0) return ESTALE;
    if (_depth >= _firstOpen + MostOpen) giveUpOutermost();
    while (true) {
        opened = Descriptor(::openat(descriptor(), name, HowToOpen));
        if (opened) return 0;
        const int error = errno;
        if (!isOutOfDescriptors(error) || !giveUpOutermost()) return error;
    }
}

int DirectoryStack::enter(const char* name, Crossing crossing) {
    Descriptor opened;
    if (const int error = openNext(name, opened); error != 0) return error;
    if (_levels.size() == _depth) _levels.emplace_back();
    Level& inner = _levels[_depth];
    inner.descriptor = std::move(opened);
    inner.place = {};
    if (crossing == Crossing::Refused) {
        int error = findPlace(*_top);
        if (error == 0) error = findPlace(inner);
        if (error == 0 &&
            (inner.place.device != _top->place.device || inner.place.mount != _top->place.mount)) {
            error = EXDEV;
        }
        if (error != 0) {
            inner.descriptor.close();
            return error;
        }
    }
    inner.name = name;
    _top = &inner;
    ++_depth;
    return 0;
}

void DirectoryStack::leave() {
    Descriptor inner = std::move(_top->descriptor);
    --_depth;
    _top = &_levels[_depth - 1];
    if (_depth - 1 >= _firstOpen || _depth == 1) return; // open, or the root
    _firstOpen = _depth - 1;
    if (_top->descriptor) return; // giveUpOutermost() has left it open
    _top->descriptor = openAgain(inner.get());
    if (_top->descriptor) return;
    inner.close(); // frees a descriptor for openFromRoot()
    _top->descriptor = openFromRoot();
}

// Opens the parent of `inner`. Fails if `inner` has been moved to another directory meanwhile.
Descriptor DirectoryStack::openAgain(int inner) const {
    if (inner < 0) return {};
    Descriptor opened(::openat(inner, "..", HowToOpen));
    return isAt(opened, *_top) ? std::move(opened) : Descriptor();
}

Descriptor DirectoryStack::openFromRoot() const {
    Descriptor current;
    for (std::size_t i = 1; i < _depth; ++i) {
        const int outer = i == 1 ? _levels.front().descriptor.get() : current.get();
        current = Descriptor(::openat(outer, _levels[i].name.c_str(), HowToOpen));
        if (!current) return {};
    }
    return isAt(current, *_top) ? std::move(current) : Descriptor();
}

bool DirectoryStack::standsOnDirectory() const {
    const unsigned char type = listing().type();
    if (type != DT_UNKNOWN) return type == DT_DIR;
    FileStatus status;
    return readStatus(descriptor(), listing().name(), AT_SYMLINK_NOFOLLOW, status) == 0 &&
           status.isDirectory();
}

} // namespace platform::detail
