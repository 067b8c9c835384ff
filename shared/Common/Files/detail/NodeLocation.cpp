// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/detail/NodeLocation.hpp"

#include "platform/foundation/fatal.hpp"

#include <algorithm>
#include <functional>
#include <limits>
#include <new>

namespace tonewright {
namespace {

std::size_t combined(std::size_t hash, std::string_view text) noexcept {
    return hash * 1'000'003 + std::hash<std::string_view>()(text);
}

} // namespace

// Caches the location that was requested last, and its directory as text. In a depth-first walk, the next
// directory is the same one, one of its ancestors or one of its children.
class NodeLocation::Trail {
  public:
    static Trail& ofThisThread() {
        thread_local Trail trail;
        return trail;
    }

    /// Returns the root with the path `rootpath`.
    const Reference& root(std::string_view rootpath) {
        if (_root->rootpath() != rootpath) start(make(nullptr, rootpath));
        return _root;
    }

    Reference find(const NodeLocation& root, std::string_view directory) {
        if (&*_root != &root && _root->rootpath() != root.rootpath()) start(Reference(&root));
        if (directory.empty()) return _root;
        if (directory == _directory) return _location;
        const std::size_t common = commonLength(directory);
        // If several "/" follow a component, they all belong to it.
        while (_location->_directoryLength > common ||
               (!_location->isRoot() && directory.substr(_location->_directoryLength).starts_with('/'))) {
            _location = Reference(_location->_outer);
        }
        std::size_t at = _location->_directoryLength;
        _directory.resize(at);
        _directory.append(directory.substr(at));
        while (at < directory.size()) {
            const std::size_t slash = directory.find('/', at);
            const std::size_t end = std::min(directory.find_first_not_of('/', slash), directory.size());
            _location = make(&*_location, directory.substr(at, end - at));
            at = end;
        }
        return _location;
    }

  private:
    void start(Reference root) {
        _root = std::move(root);
        _location = _root;
        _directory.clear();
    }

    std::size_t commonLength(std::string_view directory) const {
        if (directory.starts_with(_directory)) return _directory.size();
        if (_directory.starts_with(directory)) return directory.size();
        const auto differing = std::ranges::mismatch(_directory, directory);
        return static_cast<std::size_t>(differing.in1 - _directory.begin());
    }

    Reference _root = nowhere();
    Reference _location = _root;
    std::string _directory;
};

NodeLocation::NodeLocation(const NodeLocation* outer, std::string_view text)
    : _textLength(static_cast<std::uint32_t>(text.size()))
    , _outer(outer)
    , _root(outer != nullptr ? outer->_root : this) {
    if (outer == nullptr) return;
    _directoryLength = outer->_directoryLength + text.size();
    _componentCount = outer->_componentCount + 1;
    _hash = combined(outer->_hash, text);
}

NodeLocation::Reference NodeLocation::make(const NodeLocation* outer, std::string_view text) {
    if (text.size() > std::numeric_limits<std::uint32_t>::max()) platform::fatal("A path is too long");
    void* room = ::operator new(sizeof(NodeLocation) + text.size());
    const auto* location = new (room) NodeLocation(outer, text);
    std::copy(text.begin(), text.end(), static_cast<char*>(room) + sizeof(NodeLocation));
    return Reference(location);
}

// Uses a loop instead of recursive destructors, because a long chain would overflow the stack.
void NodeLocation::release(const NodeLocation* location) noexcept {
    while (location != nullptr && location->_owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
        auto* unowned = const_cast<NodeLocation*>(location);
        location = std::exchange(unowned->_outer._location, nullptr);
        unowned->~NodeLocation();
#ifndef __clang_analyzer__ // the analyzer does not understand the reference count
        ::operator delete(unowned);
#endif
    }
}

NodeLocation::Reference NodeLocation::nowhere() {
    static const Reference none = make(nullptr, {});
    return none;
}

NodeLocation::Reference NodeLocation::withRootpath(std::string_view rootpath) const {
    Trail& trail = Trail::ofThisThread();
    const Reference root = trail.root(rootpath);
    return isRoot() ? root : trail.find(*root, directory());
}

NodeLocation::Reference NodeLocation::withDirectory(std::string_view directory) const {
    return Trail::ofThisThread().find(*_root, directory);
}

void NodeLocation::writeDirectory(char* place) const noexcept {
    for (const NodeLocation* location = this; !location->isRoot(); location = location->_outer._location) {
        const std::string_view component = location->text();
        std::copy(component.begin(), component.end(), place + location->_outer->_directoryLength);
    }
}

std::string NodeLocation::directory() const {
    std::string text(_directoryLength, '\0');
    writeDirectory(text.data());
    return text;
}

bool NodeLocation::hasDirectoryOf(const NodeLocation& other) const noexcept {
    const NodeLocation* a = this;
    for (const NodeLocation* b = &other; a != b; a = a->_outer._location, b = b->_outer._location) {
        if (a->_directoryLength != b->_directoryLength || a->_hash != b->_hash ||
            a->component() != b->component()) {
            return false;
        }
        if (a->isRoot()) return true;
    }
    return true;
}

std::size_t NodePath::hash() const noexcept {
    return combined(directory->hash(), name);
}

} // namespace tonewright
