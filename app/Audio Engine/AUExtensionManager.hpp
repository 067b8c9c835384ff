// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Finds the one effect that this application hosts, instantiates it, passes it to the engine player and tells
// the screen. Created once by the screen; works on its own from then on and does not retry.
//
// Threads: created on the main thread; the search runs on the global queue; everything after the
// instantiation's completion runs on the thread on which the platform calls it.
#pragma once

#include "app/Audio Engine/AUEnginePlayer.hpp"
#include "app/Audio Engine/AUExtensionManagerDelegate.hpp"
#include "app/Audio Engine/Preset.hpp"
#include "platform/effects/AUAudioUnit.hpp"
#include "platform/effects/AVAudioUnitComponent.hpp"
#include "platform/effects/AudioComponentDescription.hpp"

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace platform {
class AUViewController;
}

namespace tonewright {

class AUExtensionManager : public std::enable_shared_from_this<AUExtensionManager> {
  public:
    /// Creates the manager and starts the search; its results arrive later, on other threads.
    [[nodiscard]] static std::shared_ptr<AUExtensionManager>
    create(std::shared_ptr<AUExtensionManagerDelegate> receiver);
    virtual ~AUExtensionManager() = default;
    AUExtensionManager(const AUExtensionManager&) = delete;
    AUExtensionManager& operator=(const AUExtensionManager&) = delete;

    /// Returns the effect's factory presets; none without an audio unit.
    [[nodiscard]] virtual std::vector<Preset> presets() const;
    /// Returns the effect's current preset; absent without an audio unit.
    [[nodiscard]] virtual std::optional<Preset> currentPreset() const;
    /// Sets the effect's current preset; absent clears it; without an audio unit nothing happens.
    virtual void setCurrentPreset(const std::optional<Preset>& preset);
    /// Warns when there is no audio unit; no parameter is connected to any control.
    virtual void connectParametersToControls();
    /// Toggles the engine player; returns the new play state.
    virtual bool togglePlayback();
    /// Finalises the engine player.
    virtual void cleanup();

  protected:
    explicit AUExtensionManager(std::shared_ptr<AUExtensionManagerDelegate> receiver);

  private:
    using Completion = std::function<void()>;
    virtual void loadForRelease();
    virtual void selectfoundComponent(const std::optional<platform::AVAudioUnitComponent>& component,
                                      const Completion& completionHandler);
    virtual void log(const platform::AudioComponentDescription& description);
    virtual void selectAudioUnitWithComponentDescription(
        const std::optional<platform::AudioComponentDescription>& description,
        const Completion& completionHandler);
    virtual void onFoundComponent();

  public:
    const std::shared_ptr<AUEnginePlayer> auEngine;

  private:
    std::shared_ptr<AUExtensionManagerDelegate> delegate;
    std::shared_ptr<platform::AUAudioUnit> audioUnit; // nothing assigns it: presets stay empty

  public:
    std::shared_ptr<platform::AUViewController> viewController; // nothing assigns it

  private:
    const std::string componentName = "KVRN: Orvo Tonewright Extension"; // for display; not used for matching
    platform::AudioComponentDescription componentDescription{
        .componentType = platform::fourCharCode("aumf"),         // a music effect: audio and MIDI in
        .componentSubType = platform::fourCharCode("ovTw"),      // this effect
        .componentManufacturer = platform::fourCharCode("KVRN"), // its maker
        .componentFlags = 2,                                     // sandbox-safe
        .componentFlagsMask = 0,                                 // flags are ignored in matching
    };
    std::vector<platform::AVAudioUnitComponent> _availableAudioUnits; // of the last search
};

} // namespace tonewright
