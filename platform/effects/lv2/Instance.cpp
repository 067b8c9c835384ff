// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/Instance.private.hpp"

#include <unistd.h>

namespace platform::lv2 {
namespace {

Error failure(const Plugin& plugin, const std::string& reason) {
    return {"LV2", 1, "The effect \"" + plugin.name + "\" cannot be used: " + reason + "."};
}

std::string libraryPath(const LilvPlugin* plugin) {
    const LilvNode* library = lilv_plugin_get_library_uri(plugin);
    char* path = library == nullptr ? nullptr : lilv_node_get_path(library, nullptr);
    std::string text = path == nullptr ? std::string() : std::string(path);
    lilv_free(path);
    return text;
}

} // namespace

Instance::Instance(std::shared_ptr<World> world, double sampleRate, std::uint32_t nominalFrames,
                   std::uint32_t sequenceBytes)
    : _world(std::move(world))
    , _sampleRate(sampleRate)
    , _features(sampleRate, nominalFrames, sequenceBytes, _worker, _scratch) {}

Result<std::unique_ptr<Instance>> Instance::make(std::shared_ptr<World> world, const Plugin& plugin,
                                                 double sampleRate, std::uint32_t nominalFrames,
                                                 std::uint32_t sequenceBytes) {
    if (const std::string lacked = lackedFeature(plugin.requiredFeatures); !lacked.empty())
        return failure(plugin, "it requires the feature " + lacked + ", which this host does not have");
    for (const Port& port : plugin.ports)
        if (port.kind == PortKind::Unknown && !port.isOptional)
            return failure(plugin,
                           "its port \"" + port.name + "\" is of a kind that this host does not know");

    std::unique_ptr<Instance> made(new Instance(std::move(world), sampleRate, nominalFrames, sequenceBytes));
    const std::scoped_lock lock(made->_world->mutex());
    const LilvPlugin* source = made->_world->plugin();
    const std::string library = libraryPath(source);
    if (library.empty() || ::access(library.c_str(), R_OK) != 0)
        return failure(plugin, "its library " + library + " is missing");
    made->_instance = lilv_plugin_instantiate(source, sampleRate, made->_features.list());
    if (made->_instance == nullptr) return failure(plugin, "it made no instance of itself");
    made->_worker.start(lilv_instance_get_handle(made->_instance),
                        static_cast<const LV2_Worker_Interface*>(
                            lilv_instance_get_extension_data(made->_instance, LV2_WORKER__interface)));
    return made;
}

Instance::~Instance() {
    if (_instance == nullptr) return;
    deactivate();
    _worker.stop();
    const std::scoped_lock lock(_world->mutex());
    lilv_instance_free(_instance);
}

void Instance::activate() {
    if (!_isActive) lilv_instance_activate(_instance);
    _isActive = true;
}

void Instance::deactivate() {
    if (_isActive) lilv_instance_deactivate(_instance);
    _isActive = false;
}

} // namespace platform::lv2
