// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The registry of the audio components installed on this machine. Any thread except the audio thread; a
// search reads files and may take a few milliseconds. It does not load the components' code.
#pragma once

#include "platform/effects/AVAudioUnitComponent.hpp"

#include <memory>
#include <vector>

namespace platform {

class AVAudioUnitComponentManager {
  public:
    /// Returns the one registry of the process.
    [[nodiscard]] static AVAudioUnitComponentManager& sharedAudioUnitComponentManager();

    /// Returns all installed components that match `description`, in the registry's order, which is the same
    /// in every run. Components installed since the last call are found.
    [[nodiscard]] std::vector<AVAudioUnitComponent>
    componentsMatchingDescription(const AudioComponentDescription& description) const;

    /// Returns the registry's provider.
    [[nodiscard]] std::shared_ptr<ComponentProvider> provider() const;

  private:
    AVAudioUnitComponentManager() = default;
};

} // namespace platform
