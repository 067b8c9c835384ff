// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An ordered list of nodes that counts all changes other than appending. One thread at a time.
#pragma once

#include "platform/foundation/fatal.hpp"

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

namespace tonewright {

class File;

class FileList {
  public:
    using Node = std::shared_ptr<File>;

    FileList() = default;
    FileList(const FileList& other)
        : _nodes(other._nodes) {}
    FileList& operator=(const FileList& other) {
        if (this != &other) _nodes = other._nodes;
        ++_edits;
        return *this;
    }

    [[nodiscard]] std::size_t size() const noexcept { return _nodes.size(); }
    [[nodiscard]] bool empty() const noexcept { return _nodes.empty(); }
    [[nodiscard]] const Node& operator[](std::size_t index) const { return _nodes.at(index); }
    [[nodiscard]] const Node& back() const { return _nodes.at(_nodes.size() - 1); }
    [[nodiscard]] auto begin() const noexcept { return _nodes.begin(); }
    [[nodiscard]] auto end() const noexcept { return _nodes.end(); }

    /// Appends `node`, which must not be null.
    void push_back(Node node) {
        if (!node) platform::fatal(platform::UnexpectedNil);
        _nodes.push_back(std::move(node));
    }
    /// Replaces the node at `index` by `node`.
    void replace(std::size_t index, Node node) {
        if (!node) platform::fatal(platform::UnexpectedNil);
        _nodes.at(index) = std::move(node);
        ++_edits;
    }
    void insert(std::size_t index, Node node) {
        if (!node) platform::fatal(platform::UnexpectedNil);
        _nodes.insert(_nodes.begin() + static_cast<std::ptrdiff_t>(index), std::move(node));
        ++_edits;
    }
    void erase(std::size_t index) {
        _nodes.erase(_nodes.begin() + static_cast<std::ptrdiff_t>(index));
        ++_edits;
    }
    /// Removes all nodes and frees their memory.
    void clear() noexcept {
        std::vector<Node>().swap(_nodes);
        ++_edits;
    }

    /// Returns how often the list has been changed other than by appending.
    [[nodiscard]] std::uint64_t edits() const noexcept { return _edits; }

  private:
    std::vector<Node> _nodes;
    std::uint64_t _edits = 0;
};

} // namespace tonewright
