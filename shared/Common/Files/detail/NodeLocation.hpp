// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The location of nodes: a directory below a scanned root. A location stores only the last component of its
// directory and refers to the parent location, so the memory for a directory does not depend on its depth.
// Locations are immutable and shared by the nodes in a directory. Reference counting is safe on any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace tonewright {

class NodeLocation {
  public:
    /// A counted reference to a location, with the size of a pointer.
    class Reference {
      public:
        Reference() noexcept = default;
        Reference(const Reference& other) noexcept
            : Reference(other._location) {}
        Reference(Reference&& other) noexcept
            : _location(std::exchange(other._location, nullptr)) {}
        Reference& operator=(Reference other) noexcept {
            std::swap(_location, other._location);
            return *this;
        }
        ~Reference() {
            if (_location != nullptr) NodeLocation::release(_location);
        }
        const NodeLocation* operator->() const noexcept { return _location; }
        const NodeLocation& operator*() const noexcept { return *_location; }

      private:
        friend class NodeLocation;
        explicit Reference(const NodeLocation* location) noexcept
            : _location(location) {
            if (_location != nullptr) _location->_owners.fetch_add(1, std::memory_order_relaxed);
        }
        const NodeLocation* _location = nullptr;
    };

    /// Returns the location of nodes directly inside a root with an empty path.
    [[nodiscard]] static Reference nowhere();
    /// Returns the location of this directory below another root.
    [[nodiscard]] Reference withRootpath(std::string_view rootpath) const;
    /// Returns the location of another directory below this root. `directory` must be empty or end in "/".
    [[nodiscard]] Reference withDirectory(std::string_view directory) const;

    [[nodiscard]] std::string_view rootpath() const noexcept { return _root->text(); }
    /// Returns the parent location. Must not be called for the location of the root.
    [[nodiscard]] const Reference& outer() const noexcept { return _outer; }
    /// Returns the last component of the directory with every "/" after it; empty for the root.
    [[nodiscard]] std::string_view component() const noexcept {
        return isRoot() ? std::string_view() : text();
    }
    [[nodiscard]] std::int64_t componentCount() const noexcept { return _componentCount; }

    /// Returns the length of `directory` in bytes, including the "/" at the end; 0 for the root.
    [[nodiscard]] std::size_t directoryLength() const noexcept { return _directoryLength; }
    /// Writes the `directoryLength` bytes of `directory` to `place`.
    void writeDirectory(char* place) const noexcept;
    [[nodiscard]] std::string directory() const;

    /// Returns a hash of the directory that does not depend on the root.
    [[nodiscard]] std::size_t hash() const noexcept { return _hash; }
    /// Returns whether both locations have the same `directory`, even below different roots. Fast for
    /// locations that the same walk has created; others are compared component by component.
    [[nodiscard]] bool hasDirectoryOf(const NodeLocation& other) const noexcept;

  private:
    class Trail;
    NodeLocation(const NodeLocation* outer, std::string_view text);
    ~NodeLocation() = default;
    [[nodiscard]] static Reference make(const NodeLocation* outer, std::string_view text);
    static void release(const NodeLocation* location) noexcept;

    [[nodiscard]] bool isRoot() const noexcept { return _root == this; }
    // Returns the component, or the root path of a root. The bytes follow the object in the same allocation.
    [[nodiscard]] std::string_view text() const noexcept {
        return {reinterpret_cast<const char*>(this + 1), _textLength};
    }

    mutable std::atomic<std::uint32_t> _owners{0};
    std::uint32_t _textLength;
    Reference _outer; // empty for a root
    const NodeLocation* _root;
    std::size_t _directoryLength = 0;
    std::int64_t _componentCount = 0;
    std::size_t _hash = 0;
};

/// The path of an item below a root: a directory, and a name without "/".
struct NodePath {
    NodeLocation::Reference owner; // keeps the data alive that the other fields refer to
    const NodeLocation* directory;
    std::string_view name;

    [[nodiscard]] bool isEmpty() const noexcept { return directory->directoryLength() == 0 && name.empty(); }
    [[nodiscard]] std::size_t hash() const noexcept;
    /// Returns whether both paths have the same text.
    friend bool operator==(const NodePath& a, const NodePath& b) noexcept {
        return a.name == b.name && a.directory->hasDirectoryOf(*b.directory);
    }
};

} // namespace tonewright
