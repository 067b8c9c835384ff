// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The private parts of nodes, for the other code of this folder: walks over whole trees look at millions of
// paths and make no texts for it. Used from one thread at a time.
#pragma once

#include "shared/Common/Files/File.hpp"

#include <cstdint>
#include <memory>
#include <string_view>

namespace tonewright {

struct NodeInside {
    /// Returns the part of the node's `subpath` up to its last "/", and what follows; valid as long as its
    /// paths are not assigned, like all that is returned here.
    [[nodiscard]] static const NodeLocation& location(const File& node) noexcept { return *node._location; }
    [[nodiscard]] static std::string_view name(const File& node) noexcept { return node._name.view(); }
    /// Returns the node's `subpath`.
    [[nodiscard]] static NodePath path(const File& node) noexcept {
        return {node._location, &*node._location, name(node)};
    }
    /// Returns what `getParentPath` returns.
    [[nodiscard]] static NodePath parentPath(const File& node);
    /// Returns what `getFileName` returns.
    [[nodiscard]] static std::string_view fileName(const File& node) noexcept;

    static void find(File& node, const ItemIdentifier& identifier, const std::shared_ptr<File>& self,
                     std::shared_ptr<File>& found) {
        node.find(identifier, self, found);
    }
    static void writeXML(const File& node, TextWriter& writer, std::int64_t indent) {
        node.writeXML(writer, indent);
    }
    /// Writes what `list` appends.
    static void writeListElement(const File& node, TextWriter& writer);

    /// Records that a parent index relies on the node's `subpath` and `isDirectory`.
    static void becomeIndexed(File& node) noexcept { node._isIndexed = true; }
    /// Returns the number of assignments so far, in the whole process, that invalidated an index.
    [[nodiscard]] static std::uint64_t relabelings() noexcept;
};

} // namespace tonewright
