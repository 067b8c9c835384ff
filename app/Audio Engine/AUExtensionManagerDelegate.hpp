// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the extension manager reports to its delegate.
#pragma once

#include <memory>

namespace platform {
class AVAudioUnit;
}

namespace tonewright {

class AUExtensionManagerDelegate {
  public:
    virtual ~AUExtensionManagerDelegate() = default;

    /// Called when `unit` has been instantiated and connected into the engine's graph.
    virtual void onFoundComponent(const std::shared_ptr<platform::AVAudioUnit>& unit) = 0;
    /// Called when everything is ready, after `onFoundComponent`.
    virtual void onEngineInitialized() = 0;
};

} // namespace tonewright
