// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests starting, stopping and the session, and the reports about them.
#include "tests/app/engineFixture.hpp"

namespace tonewright::test {
namespace {

using StateTest = EngineFixture;

TEST_F(StateTest, ADelegateMayLeaveInsideEachCallback) {
    Lines seen;
    const auto enter = [&] {
        const auto leaving = std::make_shared<RecordingDelegate>();
        leaving->inside = [&, watched = std::weak_ptr(leaving)](const std::string& event) {
            player->delegate = nullptr;
            seen.push_back(event + (watched.expired() ? ", freed" : ""));
        };
        player->delegate = leaving;
    };
    enter();
    player->start(); // removed while the file is selected
    enter();
    runMainQueue(); // removed while the start is reported
    enter();
    player->stop();
    runMainQueue(); // removed while the stop is reported
    player->start();
    player->load(constantFile("short.wav", 3000, 0.25F));
    runMainQueue();
    enter();
    renderUntil([&] { return seen.size() == 4; });
    EXPECT_EQ(seen, (Lines{"file", "starts", "stops", "loop"}));
}

TEST_F(StateTest, TheLastReferenceMayGoInsideACallback) {
    const std::weak_ptr<AUEnginePlayer> watched = player;
    bool wasFreed = true;
    delegate->inside = [&](const std::string&) {
        player = nullptr;
        wasFreed = watched.expired();
    };
    player->start();
    runMainQueue();
    EXPECT_FALSE(wasFreed);
    EXPECT_TRUE(watched.expired());

    player = std::make_shared<AUEnginePlayer>();
    const std::weak_ptr<AUEnginePlayer> second = player;
    wasFreed = true;
    player->connect(nullptr, [&] {
        player = nullptr;
        wasFreed = second.expired();
    });
    EXPECT_FALSE(wasFreed);
    EXPECT_TRUE(second.expired());
}

TEST_F(StateTest, FirstToggleStartsAndSecondStops) {
    EXPECT_TRUE(player->toggle());
    EXPECT_TRUE(delegate->states.empty()); // the state is reported later, on the main queue
    ASSERT_EQ(delegate->files.size(), 1U);
    const std::string path = delegate->files.front();
    EXPECT_EQ(
        takeLines(),
        (Lines{"AUEnginePlayer: Audio file at '" + path + "' was selected for loading into the player.",
               "AUEnginePlayer: The player was connected to the mainMixerNode.", path,
               "AUEnginePlayer: Audio session was set active.", "AUEnginePlayer: Audio engine starting."}));
    EXPECT_GT(device->claims(), 0);

    EXPECT_FALSE(player->toggle());
    EXPECT_EQ(takeLines(),
              (Lines{"AUEnginePlayer: Audio session was set active.", // also printed for a deactivation
                     "AUEnginePlayer: Audio engine stopping."}));
    EXPECT_EQ(device->claims(), 0);
    player->stop(); // already stopped: prints nothing
    EXPECT_EQ(takeLines(), Lines{});
    EXPECT_EQ(delegate->states, (std::vector{true, false}));
    EXPECT_TRUE(delegate->loops.empty());
}

TEST_F(StateTest, StartWhilePlayingLoadsAnotherFileAndReportsNoState) {
    player->start();
    takeLines();
    player->start();
    const auto lines = takeLines();
    EXPECT_TRUE(holdsLine(lines, "AUEnginePlayer: The player was connected to the mainMixerNode."));
    EXPECT_FALSE(holdsLine(lines, "AUEnginePlayer: Audio engine starting."));
    EXPECT_EQ(delegate->states, std::vector{true});
    EXPECT_EQ(delegate->files.size(), 2U);
}

TEST_F(StateTest, FinalizeOfAStoppedPlayerOnlyDisconnects) {
    player->finalize();
    EXPECT_EQ(takeLines(),
              (Lines{
                  "AUEnginePlayer::WARNING: Function connect() with argument 'nil' causes disconnection.",
                  "AUEnginePlayer: ERROR: There is a problem with the audio file processing format.",
                  "AUEnginePlayer: Performed audio unit disconnection.",
                  "AUEnginePlayer: The audio unit was set to 'nil'.",
              }));
}

TEST_F(StateTest, RefusedSessionIsFatal) {
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // because the session starts threads in the child
    const auto refuse = [] { return platform::Error("Test", 7, "No."); };
    EXPECT_DEATH(
        {
            platform::setSessionFaults({.setCategory = refuse, .setActive = {}});
            player->start();
        },
        "AUEnginePlayer::ERROR: Could not set audio session active true\\. system error: .*No\\..*\\.\n");
    EXPECT_DEATH(
        {
            player->start();
            platform::setSessionFaults({.setCategory = {}, .setActive = [&](bool) { return refuse(); }});
            player->stop();
        },
        "AUEnginePlayer::ERROR: Could not set audio session active false\\. system error: .*No\\..*\\.\n");
}

} // namespace
} // namespace tonewright::test
