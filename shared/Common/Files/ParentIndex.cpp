// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/ParentIndex.hpp"

#include "platform/foundation/fatal.hpp"
#include "shared/Common/Files/Folder.hpp"

namespace tonewright {
namespace {

// A list this short is indexed as fast as it is walked.
constexpr std::size_t ShortList = 16;

[[noreturn]] void failConversion() {
    platform::fatal("Could not cast value of type 'File' to 'Folder'");
}

bool hasSubpath(const File& node, std::string_view path) {
    const std::string_view directory = node.directoryPart();
    return path.size() == directory.size() + node.namePart().size() && path.starts_with(directory) &&
           path.substr(directory.size()) == node.namePart();
}

} // namespace

std::shared_ptr<File> ParentIndex::walk(const FileList& list, std::string_view path) {
    for (std::size_t i = list.size(); i > 0; --i) {
        const auto& node = list[i - 1];
        if (!node->isDirectory()) continue;
        if (node->asFolder() == nullptr) failConversion();
        if (hasSubpath(*node, path)) return node;
    }
    return nullptr;
}

std::shared_ptr<File> ParentIndex::find(const FileList& list, std::string_view path) {
    const Stamp now{list.edits(), File::relabelings()};
    if (now != _stamp || list.size() < _indexed) {
        if (list.size() > ShortList && _walked != now) {
            _walked = now;
            return walk(list, path);
        }
        _positions.clear();
        _indexed = 0;
        _lastMisfit.reset();
        _stamp = now;
    }
    indexNewEntries(list);
    const auto found = _positions.find(path);
    if (_lastMisfit && (found == _positions.end() || *_lastMisfit > found->second)) failConversion();
    return found == _positions.end() ? nullptr : list[found->second];
}

void ParentIndex::indexNewEntries(const FileList& list) {
    for (; _indexed < list.size(); ++_indexed) {
        File& node = *list[_indexed];
        node.becomeIndexed();
        if (!node.isDirectory()) continue;
        if (node.asFolder() != nullptr)
            _positions.insert_or_assign(node.subpath(), _indexed);
        else
            _lastMisfit = _indexed;
    }
}

} // namespace tonewright
