// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Files/NodeLocation.hpp"

#include "platform/foundation/fatal.hpp"
#include "shared/Common/Files/pathText.hpp"

#include <algorithm>
#include <array>
#include <limits>
#include <new>

namespace tonewright {
namespace {

// The locations last used, by the length of their directory: a walk that goes depth first mostly finds its
// own again.
constexpr std::size_t RememberedLocations = 64;

} // namespace

NodeLocation::NodeLocation(Root rootpath, std::string_view directory)
    : _directoryLength(static_cast<std::uint32_t>(directory.size()))
    , _rootpath(std::move(rootpath))
    , _componentCount(tonewright::componentCount(directory)) {}

NodeLocation* NodeLocation::make(const Root& rootpath, std::string_view directory) {
    if (directory.size() > std::numeric_limits<std::uint32_t>::max()) platform::fatal("A path is too long");
    void* room = ::operator new(sizeof(NodeLocation) + directory.size());
    auto* location = new (room) NodeLocation(rootpath, directory);
    std::copy(directory.begin(), directory.end(), reinterpret_cast<char*>(location + 1));
    return location;
}

void NodeLocation::destroy(NodeLocation* location) noexcept {
    location->~NodeLocation();
    ::operator delete(location);
}

NodeLocation::Reference NodeLocation::find(const Root& rootpath, std::string_view directory) {
    thread_local std::array<Reference, RememberedLocations> remembered;
    Reference& place = remembered[directory.size() % RememberedLocations];
    const NodeLocation* known = place._location;
    if (known == nullptr || known->directory() != directory ||
        (known->_rootpath != rootpath && *known->_rootpath != *rootpath))
        place = Reference(make(rootpath, directory));
    return place;
}

NodeLocation::Reference NodeLocation::nowhere() {
    static const Reference none(make(std::make_shared<const std::string>(), {}));
    return none;
}

NodeLocation::Reference NodeLocation::withRootpath(std::string_view rootpath) const {
    thread_local Root last = std::make_shared<const std::string>();
    if (*last != rootpath) last = std::make_shared<const std::string>(rootpath);
    return find(last, directory());
}

NodeLocation::Reference NodeLocation::withDirectory(std::string_view directory) const {
    return find(_rootpath, directory);
}

} // namespace tonewright
