// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Owners of lilv objects, and functions that read the description of a plug-in. A world contains the data of
// the bundles loaded into it. lilv is not thread-safe, so each world has a mutex for all its users. Any
// thread except the audio thread.
#pragma once

#include "platform/effects/lv2/BundleIndex.hpp"
#include "platform/effects/lv2/Plugin.hpp"

#include <lilv/lilv.h>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

namespace platform::lv2 {

template <auto Release>
struct Releaser {
    template <class T>
    void operator()(T* object) const noexcept {
        Release(object);
    }
};
using Node = std::unique_ptr<LilvNode, Releaser<lilv_node_free>>;
using Nodes = std::unique_ptr<LilvNodes, Releaser<lilv_nodes_free>>;

class World {
  public:
    /// Loads the bundles with data about `pluginURI`.
    World(const BundleIndex& index, const std::string& pluginURI);

    /// Must be locked while the world or any of its nodes is used.
    [[nodiscard]] std::mutex& mutex() noexcept { return _mutex; }
    [[nodiscard]] LilvWorld* get() const noexcept { return _world.get(); }
    /// Returns the plug-in, or null if no bundle contains it.
    [[nodiscard]] const LilvPlugin* plugin() const noexcept { return _plugin; }

    [[nodiscard]] Node uri(const char* text) const { return Node(lilv_new_uri(_world.get(), text)); }

    /// Reads the plug-in's description.
    [[nodiscard]] Plugin describe() const;
    /// Reads the plug-in's interfaces of all kinds of `Interface`, in the order of their kinds and URIs.
    [[nodiscard]] std::vector<Interface> interfaces() const;
    /// Returns the names of the kinds of the plug-in's interfaces that are not X11 ones, in a stable order.
    [[nodiscard]] std::vector<std::string> otherInterfaceKinds() const;
    /// Reads the plug-in's presets, in the order of their URIs.
    [[nodiscard]] std::vector<Preset> presets() const;

  private:
    [[nodiscard]] std::optional<Interface::Kind> kindOf(const LilvUI* interface) const;

    std::unique_ptr<LilvWorld, Releaser<lilv_world_free>> _world;
    const LilvPlugin* _plugin = nullptr;
    std::mutex _mutex;
};

} // namespace platform::lv2
