// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/requirements.hpp"

#include "platform/effects/lv2/externalInterface.hpp"

#include <algorithm>
#include <lv2/buf-size/buf-size.h>
#include <lv2/log/log.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>
#include <lv2/worker/worker.h>
#include <string_view>
#include <unistd.h>

namespace platform::lv2 {
namespace {

constexpr const char* MakeResident = "http://lv2plug.in/ns/extensions/ui#makeResident";

constexpr std::string_view Offered[] = {
    LV2_URID__map,
    LV2_URID__unmap,
    LV2_OPTIONS__options,
    LV2_BUF_SIZE__boundedBlockLength,
    LV2_WORKER__schedule,
    LV2_LOG__log,
    LV2_STATE__makePath,
    LV2_STATE__mapPath, // provided by lilv when state is saved and restored
    LV2_STATE__freePath,
    LV2_STATE__loadDefaultState,
    LV2_STATE__threadSafeRestore,
    LV2_CORE__inPlaceBroken, // inputs and outputs never share memory
    LV2_CORE__isLive,        // the engine is driven by a device's clock
    LV2_CORE__hardRTCapable,
};

// Does not include instance access: an interface that needs it could not run in a process other than the
// plug-in's.
constexpr std::string_view OfferedToInterfaces[] = {
    LV2_URID__map,     LV2_URID__unmap,      LV2_OPTIONS__options,  LV2_LOG__log,       LV2_UI__parent,
    LV2_UI__resize,    LV2_UI__portMap,      LV2_UI__portSubscribe, LV2_UI__touch,      LV2_UI__idleInterface,
    LV2_UI__fixedSize, LV2_UI__noUserResize, LV2_UI__scaleFactor,   LV2_UI__updateRate, MakeResident};
constexpr std::string_view OfferedToExternal[] = {external::HostFeature, external::OldName,
                                                  external::Class}; // which some require by mistake

// Returns the first of the `required` features that the host lacks, or an empty string.
std::string lackedFeature(const std::vector<std::string>& required) {
    const auto lacked = std::find_if(required.begin(), required.end(), [](const std::string& feature) {
        return std::find(std::begin(Offered), std::end(Offered), feature) == std::end(Offered);
    });
    return lacked == required.end() ? std::string() : *lacked;
}

} // namespace

Error unusable(const Plugin& plugin, const std::string& reason) {
    return {"LV2", 1, "The effect \"" + plugin.name + "\" cannot be used: " + reason + "."};
}

std::optional<Error> refusal(const Plugin& plugin) {
    if (const std::string lacked = lackedFeature(plugin.requiredFeatures); !lacked.empty()) {
        return unusable(plugin, "it requires the feature " + lacked + ", which this host does not have");
    }
    for (const Port& port : plugin.ports) {
        if (port.kind == PortKind::Unknown && !port.isOptional) {
            return unusable(plugin,
                            "its port \"" + port.name + "\" is of a kind that this host does not know");
        }
    }
    if (plugin.libraryPath.empty() || ::access(plugin.libraryPath.c_str(), R_OK) != 0) {
        return unusable(plugin, "its library " + plugin.libraryPath + " is missing");
    }
    return std::nullopt;
}

std::string lackedInterfaceFeature(const Interface& interface) {
    for (const std::string& feature : interface.requiredFeatures) {
        const bool isOffered =
            std::ranges::find(OfferedToInterfaces, feature) != std::end(OfferedToInterfaces) ||
            (interface.kind == Interface::Kind::External &&
             std::ranges::find(OfferedToExternal, feature) != std::end(OfferedToExternal));
        if (!isOffered) return feature;
    }
    return {};
}

} // namespace platform::lv2
