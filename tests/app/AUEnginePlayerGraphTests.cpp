// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How the effect enters and leaves the graph, as seen in the lines and the sound.
#include "platform/audio/seams.hpp"
#include "tests/app/engineFixture.hpp"
#include "tests/app/recordedGraph.hpp"

namespace tonewright::test {
namespace {

constexpr const char* Connecting = "AUEnginePlayer: A new audio unit will be connected.";
constexpr const char* Attached = "AUEnginePlayer: Audio unit was attached.";
constexpr const char* LinkedToPlayer = "AUEnginePlayer: Audio Unit was connected to the player.";
constexpr const char* LinkedToMixer = "AUEnginePlayer: Audio Unit was connected to the main mixer.";
constexpr const char* TakenOut = "AUEnginePlayer: Audio unit was disconnecting and detaching.";
constexpr const char* NoUnitGiven =
    "AUEnginePlayer::WARNING: Function connect() with argument 'nil' causes disconnection.";
constexpr const char* SetToNil = "AUEnginePlayer: The audio unit was set to 'nil'.";
constexpr const char* MidiInstalled =
    "AUEnginePlayer: The audio unit reports MIDI output names. Assigning a handling block.";

class GraphTest : public EngineFixture {
  protected:
    std::shared_ptr<InProcessEffect> halving = std::make_shared<InProcessEffect>(0.5F);
    std::shared_ptr<InProcessEffect> quartering = std::make_shared<InProcessEffect>(0.25F, Lines{"Notes"});

    /// Renders until the sound on the left is `value`, which must then last.
    void expectLasting(float value) {
        float last = -1;
        renderUntil([&] {
            last = render(64).back();
            return last == value;
        });
        for (const float sample : render(9000)) ASSERT_EQ(sample, value);
    }
};

TEST_F(GraphTest, EffectsAreExchangedAndTakenOutWhilePlaying) {
    player->start();
    player->load(constantFile("a.wav", 3000, 0.5F));
    expectLasting(0.5F);
    takeLines();
    player->connect(makeUnit(halving));
    expectInOrder({Connecting, Attached, LinkedToPlayer, LinkedToMixer});
    expectLasting(0.25F);
    player->connect(makeUnit(quartering));
    expectInOrder({Connecting, TakenOut, MidiInstalled, Attached, LinkedToPlayer, LinkedToMixer});
    expectLasting(0.125F);
    player->disconnect();
    expectInOrder({NoUnitGiven, TakenOut, "AUEnginePlayer: Performed audio unit disconnection.", SetToNil});
    expectLasting(0.5F);
}

TEST_F(GraphTest, OperationsComeInTheirOrder) {
    GraphRecord record;
    const auto note = [&](const char* operation) {
        record.add(operation);
        return std::optional<platform::Error>();
    };
    platform::setSessionFaults(
        {.setCategory = [&] { return note("set category"); },
         .setActive = [&](bool active) { return note(active ? "activate" : "deactivate"); }});
    player = std::make_shared<AUEnginePlayer>();
    EXPECT_EQ(record.take(), Lines{"attach player"});

    const auto first = makeUnit(halving);
    const auto second = makeUnit(quartering);
    player->connect(nullptr);
    EXPECT_EQ(record.take(), Lines{"connect mixer to output, 48000 Hz, 2"});
    player->connect(first);
    EXPECT_EQ(record.take(),
              (Lines{"connect mixer to output, 48000 Hz, 2", "attach effect", "disconnect input of mixer"}));
    player->disconnect();
    EXPECT_EQ(record.take(), (Lines{"disconnect input of effect", "disconnect input of mixer",
                                    "detach effect", "connect mixer to output, 48000 Hz, 2"}));

    player->delegate = delegate;
    player->start();
    const auto loop = platform::URL::fileURLWithPath(delegate->files.back());
    const auto format = platform::AVAudioFile::open(loop).value()->processingFormat(); // loops have several
    const std::string formatText =
        std::to_string(static_cast<int>(format.sampleRate)) + " Hz, " + std::to_string(format.channelCount);
    EXPECT_EQ(record.take(),
              (Lines{"disconnect input of mixer", "connect player to mixer, " + formatText, "prepare engine",
                     "set category", "activate", "schedule " + loop.lastPathComponent(),
                     "connect mixer to output, 48000 Hz, 2", "start engine", "play"}));
    const auto file = constantFile("a.wav", 480000, 0.5F);
    player->load(file);
    EXPECT_EQ(record.take(), (Lines{"stop player", "disconnect input of mixer",
                                    "connect player to mixer, 48000 Hz, 2", "play"}));
    player->connect(first);
    const Lines throughEffect{"connect mixer to output, 48000 Hz, 2",
                              "pause",
                              "attach effect",
                              "disconnect input of mixer",
                              "connect player to effect, 48000 Hz, 2",
                              "connect effect to mixer, 48000 Hz, 2",
                              "play"};
    EXPECT_EQ(record.take(), throughEffect);
    player->connect(second);
    Lines exchanged{"disconnect input of effect", "disconnect input of mixer",
                    "connect player to mixer, 48000 Hz, 2", "detach effect"};
    exchanged.insert(exchanged.end(), throughEffect.begin(), throughEffect.end());
    EXPECT_EQ(record.take(), exchanged);
    player->load(file);
    EXPECT_EQ(record.take(),
              (Lines{"stop player", "disconnect input of mixer", "disconnect input of effect",
                     "connect player to effect, no format", "connect effect to mixer, no format", "play"}));
    player->finalize();
    EXPECT_EQ(record.take(),
              (Lines{"stop player", "stop engine", "set category", "deactivate", "disconnect input of effect",
                     "disconnect input of mixer", "connect player to mixer, 48000 Hz, 2", "detach effect",
                     "connect mixer to output, 48000 Hz, 2"}));
}

TEST_F(GraphTest, TheActiveUnitMayBeConnectedAgainAndDisconnectedTwice) {
    const auto unit = makeUnit(halving);
    int completions = 0;
    player->load(constantFile("a.wav", 3000, 0.5F));
    player->connect(unit);
    takeLines();
    player->connect(unit, [&] { ++completions; });
    EXPECT_EQ(takeLines(), (Lines{Connecting, TakenOut, Attached, LinkedToPlayer, LinkedToMixer}));
    player->disconnect();
    takeLines();
    player->connect(nullptr, [&] { ++completions; });
    EXPECT_EQ(completions, 2);
    EXPECT_EQ(takeLines(), (Lines{NoUnitGiven, SetToNil}));
    EXPECT_EQ(device->claims(), 0); // nothing of this starts a stopped player
}

TEST_F(GraphTest, MIDIEventsAreLoggedInOrderWithThreeBytes) {
    player->connect(makeUnit(quartering));
    takeLines();
    ASSERT_TRUE(quartering->midiBlock);
    player = nullptr; // the block outlives the player
    std::vector<std::uint8_t> bytes(300, 9);
    const auto send = [&](std::int64_t time, std::vector<std::uint8_t> message, std::int64_t length) {
        EXPECT_EQ(quartering->midiBlock(time, 5, length, message.data()), 0);
    };
    send(512, {144, 60, 100}, 3);
    send(-1, {192, 7}, 2);
    send(2, {254}, 1);
    send(3, {}, 0);
    send(4, bytes, 300);
    quartering->midiBlock(5, 0, 3, nullptr);
    EXPECT_TRUE(output.take().empty()); // nothing is written inside the calls
    const std::string warning = "AUEnginePlayer::WARNING: The MIDI data length is not as expected.";
    const std::string event = "AUEnginePlayer: MIDI event from audio unit at: ";
    EXPECT_EQ(takeLines(), (Lines{event + "512, data: 144, 60, 100", warning, event + "-1, data: 192, 7, 0",
                                  warning, event + "2, data: 254, 0, 0", warning, event + "3, data: 0, 0, 0",
                                  warning, event + "4, data: 9, 9, 9", event + "5, data: 0, 0, 0"}));
}

} // namespace
} // namespace tonewright::test
