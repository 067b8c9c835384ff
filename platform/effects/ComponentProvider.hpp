// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The interface through which the component registry finds components and creates units. The program's
// provider finds LV2 bundles; tests supply their own. Both operations may be called on any thread except the
// audio thread and may take milliseconds.
#pragma once

#include "platform/effects/AudioComponentDescription.hpp"
#include "platform/foundation/Result.hpp"

#include <memory>
#include <string>
#include <vector>

namespace platform {

class AUAudioUnit;

/// The properties of a component that are known without loading its code.
struct ComponentRecord {
    AudioComponentDescription description; // the component's own description, with a mask of 0
    std::string name;
    std::string version;
    std::string identifier; // the provider's key, the same in every run
};

class ComponentProvider {
  public:
    ComponentProvider() = default;
    virtual ~ComponentProvider() = default;
    ComponentProvider(const ComponentProvider&) = delete;
    ComponentProvider& operator=(const ComponentProvider&) = delete;

    /// Returns all components that match `wanted`, in the same order in every run.
    [[nodiscard]] virtual std::vector<ComponentRecord>
    componentsMatching(const AudioComponentDescription& wanted) = 0;
    /// Creates a unit of the component, or returns the reason why that failed.
    [[nodiscard]] virtual Result<std::shared_ptr<AUAudioUnit>> instantiate(const ComponentRecord& record) = 0;
};

/// Creates the provider of LV2 plug-ins, which finds the plug-ins in the search path and the effect that
/// comes with the program.
[[nodiscard]] std::shared_ptr<ComponentProvider> makeLv2ComponentProvider();

} // namespace platform
