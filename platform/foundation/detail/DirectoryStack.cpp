// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/detail/DirectoryStack.hpp"

#include "platform/foundation/detail/PathLocation.hpp"

#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace platform::detail {
namespace {

constexpr int HowToOpen = O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC;

// A process has often no more than 1,024 descriptors, and others want some: a removal on the way, for one.
constexpr std::size_t MostOpen = 256;

bool isOutOfDescriptors(int error) {
    return error == EMFILE || error == ENFILE;
}

} // namespace

DirectoryStack::DirectoryStack(Descriptor root, std::string path) {
    _levels.push_back({std::move(root), std::move(path)});
}

bool DirectoryStack::giveUpOutermost() {
    for (; _firstOpen + 1 < _levels.size(); ++_firstOpen) {
        Level& level = _levels[_firstOpen];
        if (!level.descriptor) continue;
        struct stat status {};
        if (::fstat(level.descriptor.get(), &status) != 0) continue;
        level.device = status.st_dev;
        level.fileNumber = status.st_ino;
        level.descriptor.close();
        ++_firstOpen;
        return true;
    }
    return false;
}

int DirectoryStack::enter(const char* name) {
    if (descriptor() < 0) return ENOENT;
    if (_levels.size() - _firstOpen >= MostOpen) giveUpOutermost();
    while (true) {
        const int opened = ::openat(descriptor(), name, HowToOpen);
        if (opened >= 0) {
            _levels.push_back({Descriptor(opened), name});
            return 0;
        }
        const int error = errno;
        if (!isOutOfDescriptors(error) || !giveUpOutermost()) return error;
    }
}

void DirectoryStack::leave() {
    Level inner = std::move(_levels.back());
    _levels.pop_back();
    const std::size_t top = _levels.size() - 1;
    if (top >= _firstOpen) return; // still open, or found gone before
    _firstOpen = top;
    _levels.back().descriptor = openAgain(inner.descriptor.get());
    if (_levels.back().descriptor) return;
    inner.descriptor.close(); // its descriptor may be the one that is needed
    _levels.back().descriptor = openFromRoot();
}

// The way up is short, but leads elsewhere when the inner directory was moved meanwhile.
Descriptor DirectoryStack::openAgain(int inner) {
    if (inner < 0) return {};
    Descriptor opened(::openat(inner, "..", HowToOpen));
    struct stat status {};
    const Level& level = _levels.back();
    if (!opened || ::fstat(opened.get(), &status) != 0 || status.st_dev != level.device ||
        status.st_ino != level.fileNumber)
        return {};
    return opened;
}

Descriptor DirectoryStack::openFromRoot() {
    int error = 0;
    Descriptor current = openDirectory(_levels.front().name, error);
    for (std::size_t i = 1; current && i < _levels.size(); ++i)
        current = Descriptor(::openat(current.get(), _levels[i].name.c_str(), HowToOpen));
    struct stat status {};
    const Level& level = _levels.back();
    if (!current || ::fstat(current.get(), &status) != 0 || status.st_dev != level.device ||
        status.st_ino != level.fileNumber)
        return {};
    return current;
}

} // namespace platform::detail
