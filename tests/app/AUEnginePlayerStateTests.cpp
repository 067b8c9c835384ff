// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Starting, stopping, the session, and what is reported of them.
#include "platform/audio/seams.hpp"
#include "tests/app/engineFixture.hpp"

namespace tonewright::test {
namespace {

using StateTest = EngineFixture;

/// Calls a function inside each callback and writes down whether the object that it may free is still there.
class FickleDelegate final : public AUEnginePlayerDelegate {
  public:
    FickleDelegate(std::function<void()> act, std::shared_ptr<Lines> seen)
        : _act(std::move(act))
        , _seen(std::move(seen)) {}
    std::weak_ptr<void> watched; // absent: this delegate

    void onPlayerStateChanged(bool playing) override { note(playing ? "starts" : "stops"); }
    void onFileSelect(const std::string&) override { note("file"); }
    void onLoop(std::int64_t) override { note("loop"); }

  private:
    void note(const std::string& event) const {
        const auto act = _act; // after the call there may be no `this`
        const auto seen = _seen;
        const std::weak_ptr<void> object = watched.expired() ? std::weak_ptr<void>(_alive) : watched;
        act();
        seen->push_back(event + (object.expired() ? ", freed" : ""));
    }

    std::function<void()> _act;
    std::shared_ptr<Lines> _seen;
    std::shared_ptr<int> _alive = std::make_shared<int>();
};

TEST_F(StateTest, ADelegateMayLeaveInsideEachCallback) {
    const auto seen = std::make_shared<Lines>();
    const auto enter = [&] {
        player->delegate = std::make_shared<FickleDelegate>([this] { player->delegate = nullptr; }, seen);
    };
    enter();
    player->start(); // leaves when the file is chosen
    enter();
    runMainQueue(); // leaves when the start is reported
    enter();
    player->stop();
    runMainQueue(); // leaves when the stop is reported
    player->start();
    player->load(constantFile("short.wav", 3000, 0.25F));
    runMainQueue();
    enter();
    renderUntil([&] { return seen->size() == 4; });
    EXPECT_EQ(*seen, (Lines{"file", "starts", "stops", "loop"}));
}

TEST_F(StateTest, TheLastReferenceMayGoInsideACallback) {
    const auto seen = std::make_shared<Lines>();
    const auto letGo = std::make_shared<FickleDelegate>([this] { player = nullptr; }, seen);
    const std::weak_ptr<AUEnginePlayer> watched = player;
    letGo->watched = watched;
    player->delegate = letGo;
    player->start();
    runMainQueue();
    ASSERT_FALSE(seen->empty());
    EXPECT_EQ(seen->front(), "file");
    EXPECT_TRUE(watched.expired());

    player = std::make_shared<AUEnginePlayer>();
    const std::weak_ptr<AUEnginePlayer> second = player;
    bool wasFreed = true;
    player->connect(nullptr, [&] {
        player = nullptr;
        wasFreed = second.expired();
    });
    EXPECT_FALSE(wasFreed);
    EXPECT_TRUE(second.expired());
}

TEST_F(StateTest, FirstToggleStartsAndSecondStops) {
    EXPECT_TRUE(player->toggle());
    EXPECT_TRUE(delegate->states.empty()); // reported later, on the main queue
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
    player->stop(); // is stopped already: says nothing
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
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // the session starts threads in the child
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
