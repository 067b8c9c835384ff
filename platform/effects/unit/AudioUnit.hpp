// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An LV2 plug-in as an AUAudioUnit.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"
#include "platform/effects/lv2/EffectProcessor.hpp"
#include "platform/effects/unit/SilentRun.hpp"

#include <utility>

namespace platform::lv2 {

class AudioUnit final : public AUAudioUnit {
  public:
    explicit AudioUnit(std::shared_ptr<EffectProcessor> processor);

    [[nodiscard]] std::shared_ptr<NodeProcessor> processor() override { return _silentRun; }
    [[nodiscard]] std::string contextName() const override;
    void setContextName(std::string name) override;
    [[nodiscard]] std::optional<std::vector<AUAudioUnitPreset>> factoryPresets() const override;
    [[nodiscard]] std::optional<AUAudioUnitPreset> currentPreset() const override;
    void setCurrentPreset(const std::optional<AUAudioUnitPreset>& preset) override;
    [[nodiscard]] std::vector<std::string> MIDIOutputNames() const override;
    void setMIDIOutputEventBlock(MIDIOutputEventBlock block) override;
    bool sendMIDIEvent(std::span<const std::uint8_t> message) override;
    [[nodiscard]] std::vector<AUParameter> parameters() const override;
    [[nodiscard]] float parameterValue(std::uint32_t address) const override;
    void setParameterValue(std::uint32_t address, float value) override;
    [[nodiscard]] std::uint32_t latencyFrames() const override { return _processor->latencyFrames(); }
    [[nodiscard]] std::vector<std::uint8_t> fullState() const override;
    std::optional<Error> setFullState(std::span<const std::uint8_t> state) override;
    void requestViewController(std::function<void(std::shared_ptr<UIViewController>)> completion) override;

    [[nodiscard]] EffectProcessor& lv2Processor() const noexcept { return *_processor; }
    /// Claims the right to show the effect's own interface, which can be open only once. Returns false if it
    /// is claimed already. Main thread.
    [[nodiscard]] bool claimInterface() noexcept { return !std::exchange(_hasInterface, true); }
    void releaseInterface() noexcept { _hasInterface = false; }
    /// Sets whether the effect is run on silence while the engine does not run it. MIDI that it sends then is
    /// dropped. Main thread.
    void runOnSilence(bool isWanted) { _silentRun->setWanted(isWanted); }

  private:
    [[nodiscard]] const std::vector<Preset>& presets() const;

    const std::shared_ptr<EffectProcessor> _processor;
    const std::shared_ptr<SilentRun> _silentRun; // wraps _processor
    bool _hasInterface = false;                  // main thread only
    mutable std::mutex _mutex; // guards the following members; never held during a call into the plug-in
    std::string _contextName;
    mutable std::optional<std::vector<Preset>> _presets; // read at first use, then constant
    std::optional<AUAudioUnitPreset> _currentPreset;
};

/// Creates a controller for the effect's own interface, or for a generic interface if the effect has none
/// that can be shown, and passes it to `completion`, later or at once; null if creating the effect's own
/// interface fails. Main thread.
void makeEffectViewController(std::shared_ptr<AudioUnit> unit,
                              std::function<void(std::shared_ptr<UIViewController>)> completion);

} // namespace platform::lv2
