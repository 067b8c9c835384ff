// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Gives the rest of this folder access to the private members of nodes, so that walks over whole trees can
// examine millions of paths without creating strings. One thread at a time.
#pragma once

#include "shared/Common/Files/File.hpp"

#include <cstdint>
#include <memory>
#include <string_view>

namespace tonewright {

struct NodeInside {
    /// These two functions return the part of the node's `subpath` up to its last "/", and the part after it.
    /// Like all results of this class, they are valid until a path is assigned to the node.
    [[nodiscard]] static const NodeLocation& location(const File& node) noexcept { return *node._location; }
    [[nodiscard]] static std::string_view name(const File& node) noexcept { return node._name.view(); }
    /// Returns the node's `subpath`.
    [[nodiscard]] static NodePath path(const File& node) noexcept {
        return {node._location, &*node._location, name(node)};
    }
    /// Returns the result of `getParentPath` as a NodePath.
    [[nodiscard]] static NodePath parentPath(const File& node);
    /// Returns the result of `getFileName` as a view.
    [[nodiscard]] static std::string_view fileName(const File& node) noexcept;

    static void find(File& node, const ItemIdentifier& identifier, const std::shared_ptr<File>& self,
                     std::shared_ptr<File>& found) {
        node.find(identifier, self, found);
    }
    static void writeXML(const File& node, TextWriter& writer, std::int64_t indent) {
        node.writeXML(writer, indent);
    }
    /// Writes the element that `list` appends.
    static void writeListElement(const File& node, TextWriter& writer);

    /// Records that a ParentIndex depends on the node's `subpath` and `isDirectory`.
    static void becomeIndexed(File& node) noexcept { node._isIndexed = true; }
    /// Returns how many assignments in this process have invalidated a ParentIndex so far.
    [[nodiscard]] static std::uint64_t relabelings() noexcept;
};

} // namespace tonewright
