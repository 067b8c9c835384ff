// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The registry of the audio components installed on this machine. Any thread except the audio thread. A
// search reads files, may take a few milliseconds, and does not load the components' code.
#pragma once

#include "platform/effects/AVAudioUnitComponent.hpp"

#include <memory>
#include <vector>

namespace platform {

class AVAudioUnitComponentManager {
  public:
    /// Returns the process's registry.
    [[nodiscard]] static AVAudioUnitComponentManager& sharedAudioUnitComponentManager();

    /// Returns all installed components that match `description`, in the same order in every run. Also finds
    /// components that were installed since the last call.
    [[nodiscard]] std::vector<AVAudioUnitComponent>
    componentsMatchingDescription(const AudioComponentDescription& description) const;

    /// Returns the registry's provider.
    [[nodiscard]] std::shared_ptr<ComponentProvider> provider() const;

  private:
    AVAudioUnitComponentManager() = default;
};

} // namespace platform
