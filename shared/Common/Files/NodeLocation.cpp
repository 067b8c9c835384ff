// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/NodeLocation.hpp"

#include "shared/Common/Files/pathText.hpp"

#include <array>

namespace tonewright {
namespace {

// The location last used at each depth: a walk that goes depth first always finds its own again.
constexpr std::size_t RememberedDepths = 64;

} // namespace

NodeLocation::NodeLocation(Root rootpath, std::string_view directory)
    : _rootpath(std::move(rootpath))
    , _directory(directory)
    , _componentCount(tonewright::componentCount(directory)) {}

NodeLocation::Reference NodeLocation::find(const Root& rootpath, std::string_view directory) {
    thread_local std::array<Reference, RememberedDepths> remembered;
    std::size_t slashes = 0;
    for (std::size_t at = directory.find('/'); at != std::string_view::npos; at = directory.find('/', at + 1))
        ++slashes;
    Reference& place = remembered[slashes % RememberedDepths];
    const NodeLocation* known = place._location;
    if (known == nullptr || known->_directory != directory ||
        (known->_rootpath != rootpath && *known->_rootpath != *rootpath))
        place = Reference(new NodeLocation(rootpath, directory));
    return place;
}

NodeLocation::Reference NodeLocation::nowhere() {
    static const Reference none(new NodeLocation(std::make_shared<const std::string>(), {}));
    return none;
}

NodeLocation::Reference NodeLocation::withRootpath(std::string_view rootpath) const {
    thread_local Root last = std::make_shared<const std::string>();
    if (*last != rootpath) last = std::make_shared<const std::string>(rootpath);
    return find(last, _directory);
}

NodeLocation::Reference NodeLocation::withDirectory(std::string_view directory) const {
    return find(_rootpath, directory);
}

} // namespace tonewright
