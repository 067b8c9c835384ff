// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The registry of the audio components installed on this machine. Any thread but the audio thread; a search
// reads files and may take a few milliseconds. It loads no component's code.
#pragma once

#include "platform/effects/AVAudioUnitComponent.hpp"

#include <memory>
#include <mutex>
#include <vector>

namespace platform {

class AVAudioUnitComponentManager {
  public:
    /// Returns the one registry of the process.
    [[nodiscard]] static AVAudioUnitComponentManager& sharedAudioUnitComponentManager();

    /// Returns all installed components that match `description`, in the registry's order, which is the same
    /// in every run. What was installed since the last call is found.
    [[nodiscard]] std::vector<AVAudioUnitComponent>
    componentsMatchingDescription(const AudioComponentDescription& description) const;

    /// Returns the provider behind the registry.
    [[nodiscard]] std::shared_ptr<ComponentProvider> provider() const;
    /// Replaces the provider, for tests; none puts the real one back.
    void setProvider(std::shared_ptr<ComponentProvider> provider);

  private:
    AVAudioUnitComponentManager() = default;
    mutable std::mutex _mutex;                            // a leaf: held for a copy only
    mutable std::shared_ptr<ComponentProvider> _provider; // guarded by _mutex; made at first use
};

} // namespace platform
