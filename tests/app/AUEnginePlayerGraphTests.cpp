// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests how the effect enters and leaves the graph, by the printed lines and the rendered sound.
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

    /// Renders until the sample on the left channel is `value`, and expects it to last.
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
    player->connect(nodeOf(halving));
    expectInOrder({Connecting, Attached, LinkedToPlayer, LinkedToMixer});
    expectLasting(0.25F);
    player->connect(nodeOf(quartering));
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
    EXPECT_EQ(record.text(), "attach player");

    const auto first = nodeOf(halving);
    const auto second = nodeOf(quartering);
    const std::string toOutput = "connect mixer to output, 48000 Hz, 2";
    player->connect(nullptr);
    EXPECT_EQ(record.text(), toOutput);
    player->connect(first);
    EXPECT_EQ(record.text(), toOutput + "; attach effect; disconnect input of mixer");
    player->disconnect();
    const std::string takeOut = "disconnect input of effect; disconnect input of mixer; ";
    EXPECT_EQ(record.text(), takeOut + "detach effect; " + toOutput);

    player->delegate = delegate;
    player->start();
    const auto loop = platform::URL::fileURLWithPath(delegate->files.back());
    const auto format = platform::AVAudioFile::open(loop).value()->processingFormat(); // depends on the loop
    EXPECT_EQ(record.text(), "disconnect input of mixer; connect player to mixer, " +
                                 std::to_string(static_cast<int>(format.sampleRate)) + " Hz, " +
                                 std::to_string(format.channelCount) +
                                 "; prepare engine; set category; activate; schedule " +
                                 loop.lastPathComponent() + "; " + toOutput + "; start engine; play");
    const auto file = constantFile("a.wav", 480000, 0.5F);
    const std::string toMixer = "connect player to mixer, 48000 Hz, 2; ";
    player->load(file);
    EXPECT_EQ(record.text(), "stop player; disconnect input of mixer; " + toMixer + "play");
    const std::string throughEffect =
        toOutput + "; pause; attach effect; disconnect input of mixer; "
                   "connect player to effect, 48000 Hz, 2; connect effect to mixer, 48000 Hz, 2; play";
    player->connect(first);
    EXPECT_EQ(record.text(), throughEffect);
    player->connect(second);
    EXPECT_EQ(record.text(), takeOut + toMixer + "detach effect; " + throughEffect);
    player->load(file);
    EXPECT_EQ(record.text(), "stop player; disconnect input of mixer; disconnect input of effect; "
                             "connect player to effect, no format; connect effect to mixer, no format; play");
    player->finalize();
    EXPECT_EQ(record.text(), "stop player; stop engine; set category; deactivate; " + takeOut + toMixer +
                                 "detach effect; " + toOutput);
}

TEST_F(GraphTest, MIDIEventsAreLoggedInOrderWithThreeBytes) {
    player->connect(nodeOf(quartering));
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
    EXPECT_TRUE(output.take().empty()); // nothing is printed during the calls
    const std::string warning = "AUEnginePlayer::WARNING: The MIDI data length is not as expected.";
    const std::string event = "AUEnginePlayer: MIDI event from audio unit at: ";
    EXPECT_EQ(takeLines(), (Lines{event + "512, data: 144, 60, 100", warning, event + "-1, data: 192, 7, 0",
                                  warning, event + "2, data: 254, 0, 0", warning, event + "3, data: 0, 0, 0",
                                  warning, event + "4, data: 9, 9, 9", event + "5, data: 0, 0, 0"}));
}

} // namespace
} // namespace tonewright::test
