// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Receives the reports of the extension manager.
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
    /// Called after `onFoundComponent`, when everything is ready.
    virtual void onEngineInitialized() = 0;
};

} // namespace tonewright
