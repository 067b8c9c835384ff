// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The entry point of the plug-in's library: LV2's C interface to Plugin. No exception may leave these
// functions.

#include "Plugin.hpp"
#include "Uris.hpp"

#include <lv2/core/lv2.h>
#include <lv2/core/lv2_util.h>

#include <exception>
#include <memory>

namespace {

using tonewright::effect::Plugin;

Plugin& plugin(LV2_Handle handle) noexcept {
    return *static_cast<Plugin*>(handle);
}

LV2_Handle instantiate(const LV2_Descriptor*, double rate, const char*, const LV2_Feature* const* features) {
    if (!(rate >= 1000. && rate <= 1000000.)) {
        return nullptr;
    }
    try {
        const void* map = features == nullptr ? nullptr : lv2_features_data(features, LV2_URID__map);
        return std::make_unique<Plugin>(rate, static_cast<const LV2_URID_Map*>(map)).release();
    } catch (const std::exception&) {
        return nullptr;
    }
}

void connectPort(LV2_Handle handle, std::uint32_t port, void* data) {
    plugin(handle).connect(port, data);
}

void activate(LV2_Handle handle) {
    plugin(handle).activate();
}

void run(LV2_Handle handle, std::uint32_t frames) {
    plugin(handle).run(frames);
}

void cleanup(LV2_Handle handle) {
    const std::unique_ptr<Plugin> last{&plugin(handle)};
}

LV2_State_Status save(LV2_Handle handle, LV2_State_Store_Function store, LV2_State_Handle state,
                      std::uint32_t, const LV2_Feature* const*) {
    return plugin(handle).save(store, state);
}

LV2_State_Status restore(LV2_Handle handle, LV2_State_Retrieve_Function retrieve, LV2_State_Handle state,
                         std::uint32_t, const LV2_Feature* const*) {
    return plugin(handle).restore(retrieve, state);
}

const void* extensionData(const char* uri) {
    static const LV2_State_Interface state{save, restore};
    return std::string_view{uri} == LV2_STATE__interface ? &state : nullptr;
}

const LV2_Descriptor Descriptor{
    tonewright::effect::PluginUri, instantiate, connectPort, activate, run, nullptr, cleanup, extensionData};

} // namespace

LV2_SYMBOL_EXPORT const LV2_Descriptor* lv2_descriptor(std::uint32_t index) {
    return index == 0 ? &Descriptor : nullptr;
}
