// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect implemented by the test: it scales the sound and records what its host does.
#pragma once

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/effects/AUAudioUnit.hpp"
#include "platform/effects/AVAudioUnit.hpp"
#include "platform/effects/seams.hpp"
#include "tests/audio/audioFixture.hpp"
#include "tests/support/waitFor.hpp"

namespace tonewright::test {

class InProcessEffect final : public platform::AUAudioUnit {
  public:
    explicit InProcessEffect(float gain = 0.5F, Lines midiOutputs = {})
        : _midiOutputs(std::move(midiOutputs)) {
        _processor->gain = gain;
    }

    /// The block passed to `setMIDIOutputEventBlock`; empty if it was not called.
    platform::MIDIOutputEventBlock midiBlock;
    /// Replaces the default answer to a request for the interface, which is null.
    using Answer = std::function<void(std::shared_ptr<platform::UIViewController>)>;
    std::function<void(Answer)> onViewRequest = [](Answer answer) {
        platform::DispatchQueue::main().async([answer = std::move(answer)] { answer(nullptr); });
    };

    std::shared_ptr<platform::NodeProcessor> processor() override { return _processor; }
    std::string contextName() const override { return _contextName; }
    void setContextName(std::string name) override { _contextName = std::move(name); }
    std::optional<std::vector<platform::AUAudioUnitPreset>> factoryPresets() const override { return {}; }
    std::optional<platform::AUAudioUnitPreset> currentPreset() const override { return {}; }
    void setCurrentPreset(const std::optional<platform::AUAudioUnitPreset>&) override {}
    std::vector<std::string> MIDIOutputNames() const override { return _midiOutputs; }
    void setMIDIOutputEventBlock(platform::MIDIOutputEventBlock block) override {
        midiBlock = std::move(block);
    }
    bool sendMIDIEvent(std::span<const std::uint8_t>) override { return false; }
    std::vector<platform::AUParameter> parameters() const override { return {}; }
    float parameterValue(std::uint32_t) const override { return 0; }
    void setParameterValue(std::uint32_t, float) override {}
    std::uint32_t latencyFrames() const override { return 0; }
    std::vector<std::uint8_t> fullState() const override { return {}; }
    std::optional<platform::Error> setFullState(std::span<const std::uint8_t>) override { return {}; }
    void requestViewController(Answer completion) override { onViewRequest(std::move(completion)); }

  private:
    const Lines _midiOutputs;
    const std::shared_ptr<TestProcessor> _processor = std::make_shared<TestProcessor>();
    std::string _contextName;
};

/// A component provider of such effects, in the given order.
class InProcessProvider final : public platform::ComponentProvider {
  public:
    struct Entry {
        platform::ComponentRecord record;
        std::shared_ptr<platform::AUAudioUnit> unit; // null: instantiation fails
    };
    explicit InProcessProvider(std::vector<Entry> entries = {})
        : _entries(std::move(entries)) {}
    static void install(std::shared_ptr<ComponentProvider> provider) {
        platform::setComponentProvider(std::move(provider));
    }

    std::vector<platform::ComponentRecord>
    componentsMatching(const platform::AudioComponentDescription& wanted) override {
        std::vector<platform::ComponentRecord> found;
        for (const auto& entry : _entries) {
            if (matches(entry.record.description, wanted)) found.push_back(entry.record);
        }
        return found;
    }
    platform::Result<std::shared_ptr<platform::AUAudioUnit>>
    instantiate(const platform::ComponentRecord& record) override {
        instantiated.push_back(record.identifier);
        for (const auto& entry : _entries) {
            if (entry.record.identifier == record.identifier && entry.unit) return entry.unit;
        }
        return platform::Error("Test", 1, "The effect could not be made.");
    }

    Lines instantiated; // identifiers; read only after the completion was called

  private:
    std::vector<Entry> _entries;
};

[[nodiscard]] inline std::shared_ptr<platform::AVAudioUnit>
nodeOf(const std::shared_ptr<InProcessEffect>& effect) {
    return std::make_shared<platform::AVAudioUnit>(effect);
}

} // namespace tonewright::test
