// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/World.hpp"

#include "platform/effects/lv2/lilvNodes.hpp"

#include <algorithm>
#include <lv2/core/lv2.h>
#include <lv2/presets/presets.h>
#include <lv2/ui/ui.h>
#include <tuple>

namespace platform::lv2 {
namespace {

constexpr const char* RdfsLabel = "http://www.w3.org/2000/01/rdf-schema#label";

} // namespace

World::World(const BundleIndex& index, const std::string& pluginURI)
    : _world(lilv_world_new()) {
    for (const IndexedBundle* bundle : index.bundlesAbout(pluginURI)) {
        const Node location(lilv_new_file_uri(_world.get(), nullptr, (bundle->path + "/").c_str()));
        lilv_world_load_bundle(_world.get(), location.get());
    }
    _plugin = lilv_plugins_get_by_uri(lilv_world_get_all_plugins(_world.get()), uri(pluginURI.c_str()).get());
}

std::vector<Interface> World::interfaces() const {
    std::vector<Interface> found;
    LilvUIs* uis = lilv_plugin_get_uis(_plugin);
    if (uis == nullptr) return found;
    LILV_FOREACH(uis, i, uis) {
        const LilvUI* ui = lilv_uis_get(uis, i);
        const auto kind = kindOf(ui);
        if (!kind) continue;
        Interface entry;
        entry.kind = *kind;
        entry.uri = textOf(lilv_ui_get_uri(ui));
        entry.bundlePath = pathOf(lilv_ui_get_bundle_uri(ui));
        entry.binaryPath = pathOf(lilv_ui_get_binary_uri(ui));
        const Node subject(lilv_node_duplicate(lilv_ui_get_uri(ui)));
        lilv_world_load_resource(_world.get(),
                                 subject.get()); // the interface may be described in a separate file
        const auto values = [&](const char* property) {
            return Nodes(lilv_world_find_nodes(_world.get(), subject.get(), uri(property).get(), nullptr));
        };
        entry.requiredFeatures = textsOf(values(LV2_CORE__requiredFeature).get());
        const Nodes optional = values(LV2_CORE__optionalFeature);
        const auto says = [&](const char* feature) {
            const Node node = uri(feature);
            return lilv_nodes_contains(optional.get(), node.get()) ||
                   std::count(entry.requiredFeatures.begin(), entry.requiredFeatures.end(), feature) > 0;
        };
        entry.isResizable = !says(LV2_UI__fixedSize) && !says(LV2_UI__noUserResize);
        const Nodes wanted = values(LV2_UI__portNotification);
        LILV_FOREACH(nodes, j, wanted.get()) {
            const LilvNode* notification = lilv_nodes_get(wanted.get(), j);
            const auto get = [&](const char* property) {
                return Node(lilv_world_get(_world.get(), notification, uri(property).get(), nullptr));
            };
            const Node index = get(LV2_UI__portIndex), symbol = get(LV2_CORE__symbol);
            const LilvPort* port = symbol ? lilv_plugin_get_port_by_symbol(_plugin, symbol.get()) : nullptr;
            if (port == nullptr && !isNumber(index.get())) continue;
            entry.notifications.push_back({port != nullptr
                                               ? lilv_port_get_index(_plugin, port)
                                               : static_cast<std::uint32_t>(lilv_node_as_int(index.get())),
                                           textOf(get(LV2_UI__protocol).get())});
        }
        found.push_back(std::move(entry));
    }
    lilv_uis_free(uis);
    std::sort(found.begin(), found.end(),
              [](const auto& a, const auto& b) { return std::tie(a.kind, a.uri) < std::tie(b.kind, b.uri); });
    return found;
}

std::vector<Preset> World::presets() const {
    std::vector<Preset> found;
    const Nodes related(lilv_plugin_get_related(_plugin, uri(LV2_PRESETS__Preset).get()));
    LILV_FOREACH(nodes, i, related.get()) {
        const LilvNode* preset = lilv_nodes_get(related.get(), i);
        lilv_world_load_resource(_world.get(), preset);
        const Node label(lilv_world_get(_world.get(), preset, uri(RdfsLabel).get(), nullptr));
        found.push_back({textOf(preset), label ? textOf(label.get()) : textOf(preset)});
    }
    std::sort(found.begin(), found.end(), [](const auto& a, const auto& b) { return a.uri < b.uri; });
    return found;
}

} // namespace platform::lv2
