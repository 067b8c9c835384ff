// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect that lives in the test: it scales the sound and remembers what its host does to it.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"
#include "platform/effects/AVAudioUnit.hpp"
#include "platform/effects/ComponentProvider.hpp"

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace tonewright::test {

class InProcessEffect final : public platform::AUAudioUnit {
  public:
    struct Settings {
        float gain = 0.5F;
        std::vector<std::string> midiOutputs;
    };
    explicit InProcessEffect(Settings settings);

    /// Returns what `setMIDIOutputEventBlock` installed; empty when it was not called.
    [[nodiscard]] const platform::MIDIOutputEventBlock& midiBlock() const { return _midiBlock; }
    /// Answers the request for the interface, instead of "none".
    std::function<void(std::function<void(std::shared_ptr<platform::UIViewController>)>)> onViewRequest;

    std::shared_ptr<platform::NodeProcessor> processor() override { return _processor; }
    std::string contextName() const override { return _contextName; }
    void setContextName(std::string name) override { _contextName = std::move(name); }
    std::optional<std::vector<platform::AUAudioUnitPreset>> factoryPresets() const override;
    std::optional<platform::AUAudioUnitPreset> currentPreset() const override { return _preset; }
    void setCurrentPreset(const std::optional<platform::AUAudioUnitPreset>& preset) override {
        _preset = preset;
    }
    std::vector<std::string> MIDIOutputNames() const override { return _settings.midiOutputs; }
    void setMIDIOutputEventBlock(platform::MIDIOutputEventBlock block) override {
        _midiBlock = std::move(block);
    }
    bool sendMIDIEvent(std::span<const std::uint8_t>) override { return false; }
    std::vector<platform::AUParameter> parameters() const override { return {}; }
    float parameterValue(std::uint32_t) const override { return 0; }
    void setParameterValue(std::uint32_t, float) override {}
    std::uint32_t latencyFrames() const override { return 0; }
    std::vector<std::uint8_t> fullState() const override { return {}; }
    std::optional<platform::Error> setFullState(std::span<const std::uint8_t>) override {
        return std::nullopt;
    }
    void requestViewController(
        std::function<void(std::shared_ptr<platform::UIViewController>)> completion) override;

  private:
    const Settings _settings;
    const std::shared_ptr<platform::NodeProcessor> _processor;
    std::string _contextName;
    std::optional<platform::AUAudioUnitPreset> _preset;
    platform::MIDIOutputEventBlock _midiBlock;
};

/// A provider of such effects, in the order given.
class InProcessProvider final : public platform::ComponentProvider {
  public:
    struct Entry {
        platform::ComponentRecord record;
        std::shared_ptr<platform::AUAudioUnit> unit; // null: instantiation fails
    };
    explicit InProcessProvider(std::vector<Entry> entries = {})
        : _entries(std::move(entries)) {}

    std::vector<platform::ComponentRecord>
    componentsMatching(const platform::AudioComponentDescription& wanted) override;
    platform::Result<std::shared_ptr<platform::AUAudioUnit>>
    instantiate(const platform::ComponentRecord& record) override;

    std::vector<std::string> instantiated; // identifiers; read it after the completion came

  private:
    std::vector<Entry> _entries;
};

/// Makes `effect` the only one that is found, and instantiates it; null after twenty seconds.
[[nodiscard]] std::shared_ptr<platform::AVAudioUnit> makeUnit(const std::shared_ptr<InProcessEffect>& effect);

} // namespace tonewright::test
