// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Finds and instantiates the effect that this application hosts, passes it to the engine player and notifies
// the main screen. The screen creates the manager once. The search starts when the manager is created and is
// not repeated.
//
// Threads: created on the main thread; the search runs on the global queue; the rest runs on the thread on
// which the platform reports that the effect has been instantiated.
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
    /// Creates the manager and starts the search. The delegate is called later, on another thread.
    [[nodiscard]] static std::shared_ptr<AUExtensionManager>
    create(std::shared_ptr<AUExtensionManagerDelegate> receiver);
    virtual ~AUExtensionManager() = default;
    AUExtensionManager(const AUExtensionManager&) = delete;
    AUExtensionManager& operator=(const AUExtensionManager&) = delete;

    /// Returns the effect's factory presets, or an empty list without an audio unit.
    [[nodiscard]] virtual std::vector<Preset> presets() const;
    /// Returns the effect's current preset, or no value without an audio unit.
    [[nodiscard]] virtual std::optional<Preset> currentPreset() const;
    /// Sets the effect's current preset, or clears it if `preset` has no value. Does nothing without an audio
    /// unit.
    virtual void setCurrentPreset(const std::optional<Preset>& preset);
    /// Prints a warning if there is no audio unit. Does not connect anything.
    virtual void connectParametersToControls();
    /// Starts or stops the engine player and returns whether it is playing now.
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
    std::shared_ptr<platform::AUAudioUnit> audioUnit; // always null, so there are no presets

  public:
    std::shared_ptr<platform::AUViewController> viewController; // always null

  private:
    const std::string componentName = "KVRN: Orvo Tonewright Extension"; // only for display
    platform::AudioComponentDescription componentDescription{
        .componentType = platform::fourCharCode("aumf"),         // a music effect: audio and MIDI input
        .componentSubType = platform::fourCharCode("ovTw"),      // this effect
        .componentManufacturer = platform::fourCharCode("KVRN"), // its maker
        .componentFlags = 2,                                     // sandbox-safe
        .componentFlagsMask = 0,                                 // matching ignores the flags
    };
    std::vector<platform::AVAudioUnitComponent> _availableAudioUnits; // found by the last search
};

} // namespace tonewright
