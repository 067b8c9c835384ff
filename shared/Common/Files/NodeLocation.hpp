// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where nodes lie: the scanned root and the directory below it, kept once for all nodes of one directory.
// Immutable; the counting of owners is safe from any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
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
            : _location(other._location) {
            if (_location != nullptr) _location->_owners.fetch_add(1, std::memory_order_relaxed);
        }
        Reference(Reference&& other) noexcept
            : _location(std::exchange(other._location, nullptr)) {}
        Reference& operator=(Reference other) noexcept {
            std::swap(_location, other._location);
            return *this;
        }
        ~Reference() {
            if (_location != nullptr && _location->_owners.fetch_sub(1, std::memory_order_acq_rel) == 1)
                NodeLocation::destroy(_location);
        }
        const NodeLocation* operator->() const noexcept { return _location; }

      private:
        friend class NodeLocation;
        explicit Reference(NodeLocation* location) noexcept
            : _location(location) {}
        NodeLocation* _location = nullptr;
    };

    /// Give the location of the nodes right inside no root at all.
    [[nodiscard]] static Reference nowhere();
    /// Give the same directory below another root.
    [[nodiscard]] Reference withRootpath(std::string_view rootpath) const;
    /// Give another directory below the same root.
    [[nodiscard]] Reference withDirectory(std::string_view directory) const;

    [[nodiscard]] const std::string& rootpath() const noexcept { return *_rootpath; }
    /// Give the directory with the "/" that ends it; empty for the root's own.
    [[nodiscard]] std::string_view directory() const noexcept {
        return {reinterpret_cast<const char*>(this + 1), _directoryLength};
    }
    [[nodiscard]] std::int64_t componentCount() const noexcept { return _componentCount; }

  private:
    using Root = std::shared_ptr<const std::string>;
    NodeLocation(Root rootpath, std::string_view directory);
    ~NodeLocation() = default;
    // The bytes of the directory stand right behind the object, in one allocation.
    [[nodiscard]] static NodeLocation* make(const Root& rootpath, std::string_view directory);
    static void destroy(NodeLocation* location) noexcept;
    [[nodiscard]] static Reference find(const Root& rootpath, std::string_view directory);

    mutable std::atomic<std::uint32_t> _owners{1};
    std::uint32_t _directoryLength;
    Root _rootpath;
    std::int64_t _componentCount;
};

} // namespace tonewright
