// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The effect that comes with the program, as the program finds and runs it.
#include "tests/effects/Rendering.hpp"

#include <atomic>

using namespace platform;
using namespace platform::test;

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

    std::shared_ptr<AVAudioUnit> node;
    AVAudioUnit::instantiate(Wanted, {}, [&](std::shared_ptr<AVAudioUnit> made, const std::optional<Error>&) {
        node = std::move(made);
    });
    ASSERT_TRUE(waitUntil([&] { return node != nullptr; }));
    AUAudioUnit& unit = *node->auAudioUnit();
    std::atomic<int> notes{0};
    ASSERT_EQ(unit.MIDIOutputNames().size(), 1U);
    unit.setMIDIOutputEventBlock(
        [&](std::int64_t, std::uint8_t, std::int64_t, const std::uint8_t*) { return ++notes * 0; });
    const auto presets = unit.factoryPresets();
    ASSERT_TRUE(presets);
    EXPECT_GE(presets->size(), 8U);

    Rendering rendering(unit, 48000, 256); // each block inside a real-time scope
    float loudest = 0;
    const auto render = [&](int blocks) {
        for (int block = 0; block < blocks; ++block) {
            rendering.block();
            for (const float sample : rendering.out(0)) {
                ASSERT_TRUE(std::isfinite(sample));
                loudest = std::max(loudest, std::abs(sample));
            }
        }
    };
    const std::uint8_t note[] = {0x90, 57, 100};
    EXPECT_TRUE(unit.sendMIDIEvent(note));
    for (const AUAudioUnitPreset& preset : *presets) {
        unit.setCurrentPreset(preset);
        render(100);
    }
    EXPECT_GT(loudest, 1e-3F);
    EXPECT_TRUE(waitUntil([&] { return notes > 0; })); // the first sound was an onset
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
