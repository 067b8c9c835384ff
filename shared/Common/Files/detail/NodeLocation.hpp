// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where nodes are: a directory below a scanned root. A location holds the last component of its directory and
// refers to the parent location, so a directory costs only its own name, however deep it is. Locations are
// immutable and shared by the nodes of one directory; reference counting is safe on any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

namespace tonewright {

class NodeLocation {
  public:
    /// Owns a location; one pointer wide.
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

    /// Returns the location of nodes directly inside an empty root.
    [[nodiscard]] static Reference nowhere();
    /// Returns the same directory below another root.
    [[nodiscard]] Reference withRootpath(std::string_view rootpath) const;
    /// Returns another directory, empty or ending in "/", below the same root.
    [[nodiscard]] Reference withDirectory(std::string_view directory) const;

    [[nodiscard]] std::string_view rootpath() const noexcept { return _root->text(); }
    /// Returns the parent location; only if the directory is not the root's own.
    [[nodiscard]] const Reference& outer() const noexcept { return _outer; }
    /// Returns the last component of the directory with every "/" after it; empty for the root's own.
    [[nodiscard]] std::string_view component() const noexcept {
        return isRoot() ? std::string_view() : text();
    }
    [[nodiscard]] std::int64_t componentCount() const noexcept { return _componentCount; }

    /// Returns the length of the whole directory in bytes, including the "/" at its end; 0 for the root's
    /// own.
    [[nodiscard]] std::size_t directoryLength() const noexcept { return _directoryLength; }
    /// Writes these bytes to `place`.
    void writeDirectory(char* place) const noexcept;
    [[nodiscard]] std::string directory() const;

    /// Returns a number that is the same for locations of the same directory, whatever their root.
    [[nodiscard]] std::size_t hash() const noexcept { return _hash; }
    /// Returns whether the directories have the same text, whatever their root. Locations made by one walk
    /// are compared at once, others component by component.
    [[nodiscard]] bool hasDirectoryOf(const NodeLocation& other) const noexcept;

  private:
    class Trail;
    NodeLocation(const NodeLocation* outer, std::string_view text);
    ~NodeLocation() = default;
    [[nodiscard]] static Reference make(const NodeLocation* outer, std::string_view text);
    static void release(const NodeLocation* location) noexcept;

    [[nodiscard]] bool isRoot() const noexcept { return _root == this; }
    // The bytes follow the object, in one allocation: the component, or the root path of a root.
    [[nodiscard]] std::string_view text() const noexcept {
        return {reinterpret_cast<const char*>(this + 1), _textLength};
    }

    mutable std::atomic<std::uint32_t> _owners{0};
    std::uint32_t _textLength;
    Reference _outer; // none for a root
    const NodeLocation* _root;
    std::size_t _directoryLength = 0;
    std::int64_t _componentCount = 0;
    std::size_t _hash = 0;
};

/// The path of an item below a root: a directory and the name in it, which has no "/".
struct NodePath {
    NodeLocation::Reference owner; // keeps what the other two refer to
    const NodeLocation* directory;
    std::string_view name;

    [[nodiscard]] bool isEmpty() const noexcept { return directory->directoryLength() == 0 && name.empty(); }
    [[nodiscard]] std::size_t hash() const noexcept;
    /// Returns whether the texts are the same.
    friend bool operator==(const NodePath& a, const NodePath& b) noexcept {
        return a.name == b.name && a.directory->hasDirectoryOf(*b.directory);
    }
};

} // namespace tonewright
