// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/File.hpp"

#include "platform/foundation/ByteCountFormatter.hpp"
#include "platform/foundation/DateFormatter.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "shared/Common/Files/ItemIdentifier.hpp"
#include "shared/Common/Files/detail/NodeInside.hpp"
#include "shared/Common/Files/detail/pathText.hpp"

#include <algorithm>
#include <atomic>

namespace tonewright {
namespace {

std::atomic<std::uint64_t> relabelingCount{0};

// Returns the value of an attribute. It is a fatal error if it is missing from a dictionary with other
// attributes.
template <class T>
T required(const std::optional<T>& attribute) {
    if (!attribute) platform::fatal(platform::UnexpectedNilUnwrapping);
    return *attribute;
}

// Returns whether `component`, which is empty or ends in "/", is empty or ends in exactly one "/".
bool endsInOneSlash(std::string_view component) {
    return component.empty() || (component.size() > 1 && component[component.size() - 2] != '/');
}

} // namespace

File::File()
    : _location(NodeLocation::nowhere()) {}

platform::NSNumber File::uid() const noexcept {
    return _uidIsBeyondSigned ? platform::NSNumber(_uid)
                              : platform::NSNumber(static_cast<std::int64_t>(_uid));
}

void File::setUid(platform::NSNumber value) noexcept {
    _uid = value.unsignedLongLongValue();
    _uidIsBeyondSigned = value.isBeyondSigned();
}

std::string File::subpath() const {
    const std::size_t split = _location->directoryLength();
    std::string path(split + _name.view().size(), '\0');
    _location->writeDirectory(path.data());
    std::ranges::copy(_name.view(), path.data() + split);
    return path;
}

void File::setSubpath(std::string_view value) {
    const std::size_t split = value.rfind('/') + 1; // 0 without a "/"
    _location = _location->withDirectory(value.substr(0, split));
    _name = CompactText(value.substr(split));
    if (value.empty()) set_indent(0);
    // There is no `else`: a subpath without components has the depth -1.
    set_indent(_location->componentCount() + (split < value.size() ? 1 : 0) - 1);
    noteRelabeling();
}

void File::setIsDirectory(bool value) noexcept {
    _isDirectory = value;
    noteRelabeling();
}

void File::noteRelabeling() noexcept {
    if (_isIndexed) relabelingCount.fetch_add(1, std::memory_order_relaxed);
}

std::uint64_t NodeInside::relabelings() noexcept {
    return relabelingCount.load(std::memory_order_relaxed);
}

std::string File::getFilePath() const {
    return std::string(rootpath()).append("/").append(subpath());
}

std::string_view NodeInside::fileName(const File& node) noexcept {
    if (!name(node).empty()) return name(node);
    const std::string_view component = location(node).component();
    return lastComponent(component.empty() ? node.rootpath() : component);
}

std::string File::getFileName() const {
    return std::string(NodeInside::fileName(*this));
}

std::string File::getFileExtension() const {
    const std::string_view component = _location->component();
    return std::string(extensionOf(_name.view().empty() ? component : _name.view()));
}

NodePath NodeInside::parentPath(const File& node) {
    // Usually the parent is the directory without its "/". If the directory ends in several "/", the text
    // decides.
    NodeLocation::Reference directory = node._location;
    if (name(node).empty() || !endsInOneSlash(directory->component())) {
        const std::string path = node.getParentPath();
        if (path == "/") {
            directory = location(node).withDirectory(path);
            return {directory, &*directory, {}};
        }
        directory = location(node).withDirectory(path.empty() ? path : path + "/");
    }
    std::string_view last = directory->component();
    if (last.empty()) return {directory, &*directory, {}};
    last.remove_suffix(1);
    const NodeLocation* outer = &*directory->outer();
    return {std::move(directory), outer, last};
}

std::string File::getParentPath() const {
    return std::string(withoutLastComponent(subpath()));
}

platform::NSNumber File::getSystemFileNumber() const {
    return _attributes.isEmpty() ? platform::NSNumber(-1) : required(_attributes.systemFileNumber());
}

std::string File::getSystemFileNumberFormatted() const {
    if (_attributes.isEmpty()) return std::string(InvalidAttribute);
    return required(_attributes.systemFileNumber()).stringValue();
}

platform::Date File::getModificationDate() const {
    return _attributes.isEmpty() ? platform::Date::now() : required(_attributes.modificationDate());
}

std::string File::getModifiedDateFormatted() const {
    if (_attributes.isEmpty()) return std::string(InvalidAttribute);
    return platform::DateFormatter().stringFromDate(required(_attributes.modificationDate()));
}

platform::Date File::getCreationDate() const {
    return _attributes.isEmpty() ? platform::Date::now() : required(_attributes.creationDate());
}

std::string File::getCreationDateFormatted() const {
    if (_attributes.isEmpty()) return std::string(InvalidAttribute);
    return platform::DateFormatter().stringFromDate(required(_attributes.creationDate()));
}

platform::NSNumber File::getFileSize() const {
    return _attributes.isEmpty() ? platform::NSNumber(-1) : required(_attributes.size());
}

std::string File::getFileSizeFormatted() const {
    if (_attributes.isEmpty()) return std::string(InvalidAttribute);
    return platform::ByteCountFormatter::stringFromByteCount(required(_attributes.size()).longLongValue(),
                                                             platform::ByteCountStyle::File);
}

void File::setExpanded(bool value) {
    set_expanded(value && isDirectory());
}

void File::makeExpandedList(const std::shared_ptr<File>& self, FileList& list) {
    list.push_back(self);
}

void File::findFileWithUID(std::string_view uid, const std::shared_ptr<File>& self,
                           std::shared_ptr<File>& found) {
    find(ItemIdentifier(uid), self, found);
}

void File::find(const ItemIdentifier& identifier, const std::shared_ptr<File>& self,
                std::shared_ptr<File>& found) {
    if (!identifier.names(*this)) return;
    found = self;
    std::string line = isDirectory() ? "FileTree: The following folder was found: "
                                     : "FileTree: The following file was found: ";
    platform::print(line.append(" ").append(identifier.text()).append(" ").append(getFileName()));
}

} // namespace tonewright
