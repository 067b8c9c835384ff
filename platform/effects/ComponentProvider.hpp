// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The interface below the component registry: where components come from and how one becomes a unit. The real
// one finds LV2 bundles; a test supplies its own. Both operations may be called on any thread and may take
// milliseconds; neither is called on the audio thread.
#pragma once

#include "platform/effects/AudioComponentDescription.hpp"
#include "platform/foundation/Result.hpp"

#include <memory>
#include <string>
#include <vector>

namespace platform {

class AUAudioUnit;

/// What a provider knows about a component without loading any of its code.
struct ComponentRecord {
    AudioComponentDescription description; // the component's own; its mask is 0
    std::string name;
    std::string version;
    std::string identifier; // the provider's own key; stable between runs
};

class ComponentProvider {
  public:
    ComponentProvider() = default;
    virtual ~ComponentProvider() = default;
    ComponentProvider(const ComponentProvider&) = delete;
    ComponentProvider& operator=(const ComponentProvider&) = delete;

    /// Returns all components that match `wanted`, in an order that is the same in every run.
    [[nodiscard]] virtual std::vector<ComponentRecord>
    componentsMatching(const AudioComponentDescription& wanted) = 0;
    /// Creates a unit of the component, or returns the reason why not.
    [[nodiscard]] virtual Result<std::shared_ptr<AUAudioUnit>> instantiate(const ComponentRecord& record) = 0;
};

/// Creates the provider of LV2 plug-ins: those of the search path and the effect that comes with the program.
[[nodiscard]] std::shared_ptr<ComponentProvider> makeLv2ComponentProvider();

} // namespace platform
