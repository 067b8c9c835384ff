// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/detail/ParentIndex.hpp"

#include "platform/foundation/fatal.hpp"
#include "shared/Common/Files/Folder.hpp"
#include "shared/Common/Files/detail/NodeInside.hpp"

#include <algorithm>
#include <utility>

namespace tonewright {
namespace {

// Indexing a list of this length is as fast as scanning it.
constexpr std::size_t ShortList = 16;

[[noreturn]] void failConversion() {
    platform::fatal("Could not cast value of type 'File' to 'Folder'");
}

bool hasSubpath(const File& node, const NodePath& path) {
    return NodeInside::name(node) == path.name && NodeInside::location(node).hasDirectoryOf(*path.directory);
}

} // namespace

std::shared_ptr<File> ParentIndex::walk(const FileList& list, const NodePath& path) {
    for (std::size_t i = list.size(); i > 0; --i) {
        const auto& node = list[i - 1];
        if (!node->isDirectory()) continue;
        if (node->asFolder() == nullptr) failConversion();
        if (hasSubpath(*node, path)) return node;
    }
    return nullptr;
}

std::shared_ptr<File> ParentIndex::find(const FileList& list, const NodePath& path) {
    const Stamp now{list.edits(), NodeInside::relabelings()};
    if (now != _stamp) {
        if (list.size() > ShortList && _walked != now) {
            _walked = now;
            return walk(list, path);
        }
        forget();
        _stamp = now;
    }
    indexNewEntries(list);
    if (!_lastFound || path != *_lastPath) {
        _lastPath = path;
        const std::size_t next = _slots.empty() ? 0 : slotOf(list, path, path.hash()).next;
        _lastFound = next == 0 ? std::nullopt : std::optional(next - 1);
    }
    if (_lastMisfit && (!_lastFound || *_lastMisfit > *_lastFound)) failConversion();
    return _lastFound ? list[*_lastFound] : nullptr;
}

void ParentIndex::forget() {
    std::vector<Slot>().swap(_slots);
    _folders = 0;
    _indexed = 0;
    _lastMisfit.reset();
    _lastFound.reset();
}

void ParentIndex::indexNewEntries(const FileList& list) {
    for (; _indexed < list.size(); ++_indexed) {
        File& node = *list[_indexed];
        NodeInside::becomeIndexed(node);
        if (!node.isDirectory()) continue;
        if (node.asFolder() != nullptr) {
            insert(list, _indexed);
        } else {
            _lastMisfit = _indexed;
        }
    }
}

void ParentIndex::insert(const FileList& list, std::size_t position) {
    const File& node = *list[position];
    if (_lastFound && hasSubpath(node, *_lastPath)) _lastFound = position;
    if (2 * (_folders + 1) > _slots.size()) {
        const std::size_t size = std::max<std::size_t>(64, _slots.size() * 2);
        const std::vector<Slot> old = std::exchange(_slots, std::vector<Slot>(size));
        for (const Slot& slot : old) {
            if (slot.next == 0) continue;
            std::size_t at = slot.hash & (size - 1);
            while (_slots[at].next != 0) at = (at + 1) & (size - 1);
            _slots[at] = slot;
        }
    }
    const NodePath path = NodeInside::path(node);
    const std::size_t hash = path.hash();
    Slot& slot = slotOf(list, path, hash);
    if (slot.next == 0) ++_folders;
    slot = {hash, position + 1}; // replaces an earlier folder with the same subpath
}

ParentIndex::Slot& ParentIndex::slotOf(const FileList& list, const NodePath& path, std::size_t hash) {
    const std::size_t mask = _slots.size() - 1;
    std::size_t at = hash & mask;
    while (_slots[at].next != 0 &&
           (_slots[at].hash != hash || !hasSubpath(*list[_slots[at].next - 1], path))) {
        at = (at + 1) & mask;
    }
    return _slots[at];
}

} // namespace tonewright
