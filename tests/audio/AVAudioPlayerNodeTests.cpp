// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests passes, their seams, and when completions are called.
#include "tests/audio/audioFixture.hpp"

using namespace platform;
using namespace tonewright::test;

TEST(Seams, HaveNoFrameTooManyOrTooFew) {
    struct Loop {
        std::size_t frames; // of one pass
        int passes;
        std::uint32_t block;
    };
    for (const auto& [frames, passes, block] :
         {Loop{4096, 200, 256}, Loop{4999, 200, 256}, Loop{100, 1000, 256}, Loop{1, 1000, 64},
          Loop{37, 1000, 1024}, Loop{20000, 20, 1000}}) {
        SCOPED_TRACE(frames);
        const Sound pass = countingSound(2, frames);
        const auto file = makeFile(pass);
        ASSERT_EQ(file->lengthFrames(), static_cast<std::int64_t>(frames));
        OfflineEngine offline({44100, 2}, block);
        offline.loop(file, passes);
        offline.start();
        const Sound expected = repeated(pass, static_cast<std::size_t>(passes));
        EXPECT_EQ(firstDifference(offline.render(expected[0].size()), expected), expected[0].size());
        // The last pass is complete when its last frame is in the ring buffer; another thread calls its
        // completion.
        offline.player->stop();
        EXPECT_EQ(offline.completions, passes);
    }
}

TEST(AVAudioPlayerNode, StopCallsEachPendingCompletionOnceAndReturnsAfterTheLast) {
    const auto file = makeFile(countingSound(2, 100000));
    const auto player = AVAudioPlayerNode::create();
    std::vector<int> called; // needs no lock, because stop() orders the reads
    for (int i = 0; i < 5; ++i) {
        player->scheduleFile(file, std::nullopt, [&, i] {
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
            called.push_back(i);
        });
    }
    player->stop();
    EXPECT_EQ(called, (std::vector{0, 1, 2, 3, 4}));
    player->stop();
    EXPECT_EQ(called.size(), 5U);
}

TEST(AVAudioPlayerNode, StopInsideACompletionDoesNotWaitForItself) {
    const auto file = makeFile(countingSound(2, 100));
    const auto player = AVAudioPlayerNode::create();
    Signal scheduled, first, second;
    player->scheduleFile(file, std::nullopt, [&] {
        EXPECT_TRUE(scheduled.wait());
        player->stop();
        first.raise();
    });
    player->scheduleFile(makeFile(countingSound(2, 100000)), std::nullopt, [&] { second.raise(); });
    scheduled.raise();
    EXPECT_TRUE(first.wait());
    EXPECT_TRUE(second.wait());
}

TEST(AVAudioPlayerNode, WhatACompletionOfAStopSchedulesSurvivesIt) {
    const Sound former = countingSound(2, 50000);
    const Sound next = Sound(2, sine(440, 0.5, 3000, 44100));
    const auto formerFile = makeFile(former);
    const auto nextFile = makeFile(next);
    OfflineEngine offline;
    offline.player->scheduleFile(formerFile, std::nullopt, [&] { // like the engine player while it plays
        offline.player->scheduleFile(nextFile, std::nullopt, nullptr);
    });
    offline.start();
    EXPECT_EQ(firstDifference(offline.render(1000), former), 1000U);
    offline.player->stop();
    offline.player->play();
    const Sound heard = offline.render(3000);
    EXPECT_EQ(firstDifference(heard, next), 3000U); // no frame of the former pass remains
}

TEST(AVAudioPlayerNode, PauseKeepsThePlaceAndCallsNothing) {
    const Sound pass = countingSound(2, 50000);
    const auto file = makeFile(pass);
    std::atomic<int> called{0};
    OfflineEngine offline;
    offline.player->scheduleFile(file, std::nullopt, [&] { ++called; });
    offline.start();
    Sound heard = offline.render(1000);
    offline.player->pause();
    const Sound silence = offline.render(20000);
    EXPECT_TRUE(isSilent(silence));
    offline.player->play();
    const Sound rest = offline.render(30000);
    for (std::size_t c = 0; c < 2; ++c) heard[c].insert(heard[c].end(), rest[c].begin(), rest[c].end());
    EXPECT_EQ(firstDifference(heard, pass), 31000U);
    EXPECT_EQ(called, 0);
}

TEST(AVAudioPlayerNode, ReleasedWhilePlayingCallsNothingAndLeavesTheEngineRunning) {
    const auto file = makeFile(countingSound(2, 50000));
    std::atomic<int> called{0};
    OfflineEngine offline;
    auto second = AVAudioPlayerNode::create();
    offline.engine->attachNode(second);
    offline.engine->connect(second, offline.engine->mainMixerNode(), std::nullopt);
    second->scheduleFile(file, std::nullopt, [&] { ++called; });
    second->play();
    offline.start();
    EXPECT_FALSE(isSilent(offline.render(512)));
    offline.engine->detachNode(second);
    second.reset();
    EXPECT_TRUE(isSilent(offline.render(512)));
    EXPECT_EQ(called, 0);
}

TEST(AVAudioPlayerNode, LosesItsLastReferenceOnItsOwnThread) {
    const auto file = makeFile(countingSound(2, 100));
    Signal released;
    auto player = std::make_shared<std::shared_ptr<AVAudioPlayerNode>>(AVAudioPlayerNode::create());
    const std::weak_ptr<AVAudioPlayerNode> watched = *player;
    (*player)->scheduleFile(file, std::nullopt, [player, &released] {
        player->reset();
        released.raise();
    });
    EXPECT_TRUE(released.wait());
    EXPECT_TRUE(watched.expired());
}

TEST(AVAudioPlayerNode, LosesItsLastReferenceInACompletionThatItsStopCalls) {
    auto player = AVAudioPlayerNode::create();
    std::weak_ptr<PlayerStream> stream = player->playerStream();
    player->scheduleFile(makeFile(countingSound(2, 100000)), std::nullopt, [&] { player.reset(); });
    player->stop(); // must not wait for itself
    EXPECT_FALSE(player);
    EXPECT_TRUE(waitFor([&] { return stream.expired(); }));
}

TEST(AVAudioPlayerNode, PlayWithNothingScheduledIsSilentUntilSomethingIs) {
    const Sound pass = countingSound(2, 400);
    OfflineEngine offline;
    offline.start();
    EXPECT_TRUE(isSilent(offline.render(300)));
    offline.player->scheduleFile(makeFile(pass), std::nullopt, nullptr);
    EXPECT_EQ(firstDifference(offline.render(400), pass), 400U);
}

TEST(AVAudioPlayerNode, StopAndScheduleFromManyThreadsLoseNothing) {
    const auto file = makeFile(countingSound(2, 3000));
    OfflineEngine offline;
    offline.start();
    std::atomic<int> called{0};
    constexpr int Rounds = 100;
    std::atomic<bool> rendering{true};
    std::thread audio([&] {
        while (rendering) static_cast<void>(offline.render(256));
    });
    std::thread stopping([&] {
        for (int i = 0; i < Rounds; ++i) {
            offline.player->stop();
            offline.player->play();
        }
    });
    for (int i = 0; i < Rounds; ++i) {
        offline.player->scheduleFile(file, std::nullopt, [&] { ++called; });
        if (i % 3 == 0) offline.player->pause();
        if (i % 3 == 1) offline.player->play();
    }
    stopping.join();
    offline.player->stop();
    EXPECT_EQ(called, Rounds);
    rendering = false;
    audio.join();
}
