// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The effect's way into the graph and out of it, as the lines and the sound tell it.
#include "tests/app/engineFixture.hpp"

namespace tonewright::test {
namespace {

constexpr const char* Connecting = "AUEnginePlayer: A new audio unit will be connected.";
constexpr const char* Attached = "AUEnginePlayer: Audio unit was attached.";
constexpr const char* LinkedToPlayer = "AUEnginePlayer: Audio Unit was connected to the player.";
constexpr const char* LinkedToMixer = "AUEnginePlayer: Audio Unit was connected to the main mixer.";
constexpr const char* TakenOut = "AUEnginePlayer: Audio unit was disconnecting and detaching.";
constexpr const char* NoUnitGiven =
    "AUEnginePlayer::WARNING: Function connect() with argument 'nil' causes disconnection.";
constexpr const char* NoFormat =
    "AUEnginePlayer::ERROR: There was a problem with the file processing format or the file is nil (yet).";
constexpr const char* SetToNil = "AUEnginePlayer: The audio unit was set to 'nil'.";
constexpr const char* MidiInstalled =
    "AUEnginePlayer: The audio unit reports MIDI output names. Assigning a handling block.";

class GraphTest : public EngineFixture {
  protected:
    std::shared_ptr<InProcessEffect> halving =
        std::make_shared<InProcessEffect>(InProcessEffect::Settings{0.5F, {}});
    std::shared_ptr<InProcessEffect> quartering =
        std::make_shared<InProcessEffect>(InProcessEffect::Settings{0.25F, {"Notes"}});

    /// Render until the sound on the left is `value`, which must then last.
    void expectLasting(float value) {
        float last = -1;
        renderUntil([&] {
            last = render(64).back();
            return last == value;
        });
        for (const float sample : render(9000)) ASSERT_EQ(sample, value);
    }
};

TEST_F(GraphTest, ConnectBeforeAnyFileLeavesTheEffectUnlinkedUntilOneIsLoaded) {
    int completions = 0;
    player->connect(makeUnit(halving), [&] { ++completions; });
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(takeLines(), (Lines{Connecting, Attached, NoFormat}));

    const auto url = constantFile("a.wav", 3000, 0.5F);
    player->load(url);
    EXPECT_EQ(
        takeLines(),
        (Lines{"AUEnginePlayer: Audio file at '" + url.path() + "' was selected for loading into the player.",
               "AUEnginePlayer: Player was (temporarily) disconnecting from the main mixer.",
               "AUEnginePlayer: Audio unit was (temporarily) disconnecting from the player.", "2",
               "AUEnginePlayer: Audio unit re-connecting to the player.",
               "AUEnginePlayer: Audio unit re-connectingto the main mixer."}));
    player->start();
    player->load(url);
    expectLasting(0.25F);
}

TEST_F(GraphTest, EffectsAreExchangedAndTakenOutWhilePlaying) {
    player->start();
    player->load(constantFile("a.wav", 3000, 0.5F));
    expectLasting(0.5F);
    takeLines();

    player->connect(makeUnit(halving));
    EXPECT_TRUE(holdInOrder(output.take(), {Connecting, Attached, LinkedToPlayer, LinkedToMixer}));
    expectLasting(0.25F);
    takeLines();

    player->connect(makeUnit(quartering));
    EXPECT_TRUE(holdInOrder(output.take(),
                            {Connecting, TakenOut, MidiInstalled, Attached, LinkedToPlayer, LinkedToMixer}));
    expectLasting(0.125F);
    takeLines();

    player->disconnect();
    EXPECT_TRUE(
        holdInOrder(output.take(), {NoUnitGiven, TakenOut,
                                    "AUEnginePlayer: Performed audio unit disconnection.", SetToNil}));
    expectLasting(0.5F);
}

TEST_F(GraphTest, PauseDuringRewiringCompletesNoPass) {
    player->start();
    player->load(constantFile("long.wav", 480000, 0.5F)); // ten seconds: no pass ends by itself
    renderUntil([&] { return delegate->loops.size() == 1; });
    const auto unit = makeUnit(halving);
    for (int i = 0; i < 20; ++i) {
        player->connect(i % 2 == 0 ? unit : nullptr);
        render(512);
    }
    runMainQueue();
    EXPECT_EQ(delegate->loops.size(), 1U);
}

TEST_F(GraphTest, TheActiveUnitMayBeConnectedAgain) {
    const auto unit = makeUnit(halving);
    player->load(constantFile("a.wav", 3000, 0.5F));
    player->connect(unit);
    takeLines();
    player->connect(unit);
    EXPECT_EQ(takeLines(), (Lines{Connecting, TakenOut, Attached, LinkedToPlayer, LinkedToMixer}));
}

TEST_F(GraphTest, DisconnectWithoutEffectRestoresTheDirectLink) {
    bool completed = false;
    player->load(constantFile("a.wav", 3000, 0.5F));
    takeLines();
    player->connect(nullptr, [&] { completed = true; });
    EXPECT_TRUE(completed);
    EXPECT_EQ(takeLines(), (Lines{NoUnitGiven, SetToNil}));
}

TEST_F(GraphTest, MIDIEventsAreLoggedInOrderWithThreeBytes) {
    player->connect(makeUnit(quartering));
    takeLines();
    ASSERT_TRUE(quartering->midiBlock());
    player = nullptr; // the block outlives the player
    std::vector<std::uint8_t> bytes(300, 9);
    const auto send = [&](std::int64_t time, std::vector<std::uint8_t> message, std::int64_t length) {
        EXPECT_EQ(quartering->midiBlock()(time, 5, length, message.data()), 0);
    };
    send(512, {144, 60, 100}, 3);
    send(-1, {192, 7}, 2);
    send(2, {254}, 1);
    send(3, {}, 0);
    send(4, bytes, 300);
    quartering->midiBlock()(5, 0, 3, nullptr);
    EXPECT_TRUE(output.take().empty()); // nothing is written inside the calls
    const std::string warning = "AUEnginePlayer::WARNING: The MIDI data length is not as expected.";
    const std::string event = "AUEnginePlayer: MIDI event from audio unit at: ";
    EXPECT_EQ(takeLines(), (Lines{event + "512, data: 144, 60, 100", warning, event + "-1, data: 192, 7, 0",
                                  warning, event + "2, data: 254, 0, 0", warning, event + "3, data: 0, 0, 0",
                                  warning, event + "4, data: 9, 9, 9", event + "5, data: 0, 0, 0"}));
}

} // namespace
} // namespace tonewright::test
