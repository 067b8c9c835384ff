// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/InProcessEffect.hpp"

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/dispatch/RunLoop.hpp"
#include "platform/effects/AVAudioUnitComponentManager.hpp"

namespace tonewright::test {
namespace {

class Gain final : public platform::NodeProcessor {
  public:
    explicit Gain(float gain)
        : _gain(gain) {}
    std::uint32_t inputChannels() const noexcept override { return 2; }
    std::uint32_t outputChannels() const noexcept override { return 2; }
    std::optional<platform::Error> allocate(double, std::uint32_t) override { return std::nullopt; }
    void release() noexcept override {}
    void process(platform::ConstPlanarSound inputs, platform::PlanarSound outputs,
                 std::int64_t) noexcept override {
        for (std::uint32_t channel = 0; channel < 2; ++channel) {
            for (std::uint32_t i = 0; i < outputs.frames(); ++i)
                outputs[channel][i] = _gain * inputs[channel][i];
        }
    }
    std::uint32_t latencyFrames() const noexcept override { return 0; }

  private:
    const float _gain;
};

} // namespace

InProcessEffect::InProcessEffect(Settings settings)
    : _settings(std::move(settings))
    , _processor(std::make_shared<Gain>(_settings.gain)) {}

std::optional<std::vector<platform::AUAudioUnitPreset>> InProcessEffect::factoryPresets() const {
    return std::vector<platform::AUAudioUnitPreset>{{0, "First"}, {1, "Second"}};
}

void InProcessEffect::requestViewController(
    std::function<void(std::shared_ptr<platform::UIViewController>)> completion) {
    if (onViewRequest) {
        onViewRequest(std::move(completion));
    } else {
        platform::DispatchQueue::main().async([completion = std::move(completion)] { completion(nullptr); });
    }
}

std::vector<platform::ComponentRecord>
InProcessProvider::componentsMatching(const platform::AudioComponentDescription& wanted) {
    std::vector<platform::ComponentRecord> found;
    for (const auto& entry : _entries) {
        if (matches(entry.record.description, wanted)) found.push_back(entry.record);
    }
    return found;
}

platform::Result<std::shared_ptr<platform::AUAudioUnit>>
InProcessProvider::instantiate(const platform::ComponentRecord& record) {
    instantiated.push_back(record.identifier);
    for (const auto& entry : _entries) {
        if (entry.record.identifier == record.identifier && entry.unit) return entry.unit;
    }
    return platform::Error("Test", 1, "The effect could not be made.");
}

std::shared_ptr<platform::AVAudioUnit> makeUnit(const std::shared_ptr<InProcessEffect>& effect) {
    const platform::AudioComponentDescription description{.componentType = platform::fourCharCode("aumf")};
    platform::AVAudioUnitComponentManager::sharedAudioUnitComponentManager().setProvider(
        std::make_shared<InProcessProvider>(std::vector<InProcessProvider::Entry>{
            {{.description = description, .name = "Test", .version = "1", .identifier = "test"}, effect}}));
    std::shared_ptr<platform::AVAudioUnit> made;
    platform::AVAudioUnit::instantiate(description, platform::AudioComponentInstantiationOptions::None,
                                       [&](const auto& unit, const auto&) { made = unit; });
    platform::RunLoop::current().runUntil([&] { return made != nullptr; }, 20);
    return made;
}

} // namespace tonewright::test
