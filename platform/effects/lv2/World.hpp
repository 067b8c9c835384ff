// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Owners of lilv's objects, and the reading of a plug-in's description. A world holds the data of the bundles
// loaded into it; lilv does not lock, so each world has one mutex for everything that uses it. Any thread
// except the audio thread.
#pragma once

#include "platform/effects/lv2/BundleIndex.hpp"
#include "platform/effects/lv2/Plugin.hpp"

#include <lilv/lilv.h>
#include <memory>
#include <mutex>
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
    /// Loads the bundles about `pluginURI`. The plug-in is absent from the world if none has it.
    World(const BundleIndex& index, const std::string& pluginURI);

    /// Held while anything of this world is used.
    [[nodiscard]] std::mutex& mutex() noexcept { return _mutex; }
    [[nodiscard]] LilvWorld* get() const noexcept { return _world.get(); }
    /// Returns the plug-in; null if it is absent.
    [[nodiscard]] const LilvPlugin* plugin() const noexcept { return _plugin; }

    [[nodiscard]] Node uri(const char* text) const { return Node(lilv_new_uri(_world.get(), text)); }

    /// Reads the plug-in's description.
    [[nodiscard]] Plugin describe() const;
    /// Reads its X11 interfaces, in a stable order.
    [[nodiscard]] std::vector<Interface> interfaces() const;
    /// Returns the kinds of its other interfaces, by name, in a stable order.
    [[nodiscard]] std::vector<std::string> otherInterfaceKinds() const;
    /// Reads its presets, in the order of their URIs.
    [[nodiscard]] std::vector<Preset> presets() const;

  private:
    std::unique_ptr<LilvWorld, Releaser<lilv_world_free>> _world;
    const LilvPlugin* _plugin = nullptr;
    std::mutex _mutex;
};

} // namespace platform::lv2
