// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The effect that comes with the program, as the program finds and runs it.
#include "effect/dsp/Presets.hpp"
#include "tests/effects/Rendering.hpp"

using namespace platform;
using namespace platform::test;
using namespace tonewright;

namespace {

constexpr AudioComponentDescription Wanted{fourCharCode("aumf"), fourCharCode("ovTw"), fourCharCode("KVRN"),
                                           2, 0};

} // namespace

TEST(BundledEffect, IsFoundRunsAndHearsItsPresets) {
    const auto found =
        AVAudioUnitComponentManager::sharedAudioUnitComponentManager().componentsMatchingDescription(Wanted);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_EQ(found[0].audioComponentDescription(), Wanted);
    EXPECT_EQ(found[0].name(), "KVRN: Orvo Tonewright Extension");

    const auto made = makeUnit(found[0].record().identifier);
    AUAudioUnit& unit = *made;
    auto parameters = unit.parameters();
    parameters.erase(parameters.begin()); // the latency, which it reports
    ASSERT_EQ(parameters.size(), effect::ParameterCount);
    const auto presets = unit.factoryPresets();
    ASSERT_TRUE(presets);
    ASSERT_EQ(presets->size(), effect::factoryPresets().size());

    std::atomic<int> notes{0};
    ASSERT_EQ(unit.MIDIOutputNames().size(), 1U);
    unit.setMIDIOutputEventBlock(
        [&](std::int64_t, std::uint8_t, std::int64_t, const std::uint8_t*) { return ++notes * 0; });
    Rendering rendering(unit, 48000, 256); // each block inside a real-time scope
    float loudest = 0;
    const std::uint8_t note[] = {0x90, 57, 100};
    EXPECT_TRUE(unit.sendMIDIEvent(note));
    for (const AUAudioUnitPreset& preset : *presets) {
        unit.setCurrentPreset(preset);
        const auto expected =
            std::ranges::find(effect::factoryPresets(), preset.name(), &effect::Preset::name);
        ASSERT_NE(expected, effect::factoryPresets().end()) << preset.name();
        for (std::size_t i = 0; i < parameters.size(); ++i) {
            EXPECT_FLOAT_EQ(unit.parameterValue(parameters[i].address), expected->values[i])
                << preset.name() << " " << parameters[i].identifier;
        }
        loudest = std::max(loudest, rendering.loudestOf(100));
    }
    EXPECT_GT(loudest, 1e-3F);
    EXPECT_TRUE(std::isfinite(loudest));
    EXPECT_TRUE(waitUntil([&] { return notes > 0; })); // the first sound was an onset
    const std::uint32_t enabled = parameters[effect::index(effect::Parameter::Enabled)].address;
    unit.setParameterValue(enabled, 0);
    unit.setCurrentPreset(presets->front());
    EXPECT_EQ(unit.parameterValue(enabled), 0) << "a preset leaves the switch alone";
}

#ifdef TONEWRIGHT_RTSAN
TEST(RealtimeDetector, SeesWhatTheScopeForbids) {
    EXPECT_DEATH(
        {
            const RealtimeScope realtime;
            (void)makeUnit("urn:tonewright:test:gain");
        },
        "real-time unsafe function `malloc`");
}
#endif
