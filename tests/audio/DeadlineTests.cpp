// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests that no edit blocks when effects or files do not return, or when nobody reads standard error.
#include "platform/audio/SilentDevice.hpp"
#include "platform/realtime/RealtimeScope.hpp"
#include "tests/audio/audioFixture.hpp"

using namespace platform;
using namespace tonewright::test;
using namespace std::chrono_literals;

namespace {

// Runs `work` and returns the time that it took. Ends the process if `work` does not return.
template <class Work>
std::chrono::duration<double> timeOf(Work work) {
    const auto begin = std::chrono::steady_clock::now();
    auto ended = std::async(std::launch::async, std::move(work));
    if (ended.wait_for(30s) != std::future_status::ready) {
        std::fputs("It does not return.\n", stderr);
        std::_Exit(1);
    }
    return std::chrono::steady_clock::now() - begin;
}

constexpr auto AtOnce = 1s;
constexpr auto InTime = 3s; // two seconds, and a margin for a loaded machine

// An effect whose `process` does not return until the test releases it.
struct StuckUnit : tonewright::test::Uncopied {
    StuckUnit() {
        unit->testProcessor->called = "Stuck";
        unit->testProcessor->work = [inside = inside, release = release](const Block& block) {
            const ForeignCodeScope foreign;
            inside->raise();
            while (!*release) std::this_thread::sleep_for(1ms);
            std::fill_n(block.out[0], block.frames, 0.25F);
            std::fill_n(block.out[1], block.frames, 0.25F);
        };
    }
    ~StuckUnit() { *release = true; }

    const std::shared_ptr<TestUnit> unit = std::make_shared<TestUnit>();
    const std::shared_ptr<Signal> inside = std::make_shared<Signal>();
    const std::shared_ptr<std::atomic<bool>> release = std::make_shared<std::atomic<bool>>(false);
};

// Returns an engine that plays in real time, with `unit` connected to its mixer.
std::shared_ptr<AVAudioEngine> realTimeEngine(const std::shared_ptr<AVAudioNode>& unit) {
    auto engine = AVAudioEngine::create(std::make_shared<SilentDevice>());
    engine->attachNode(unit);
    engine->connect(unit, engine->mainMixerNode(), std::nullopt);
    return engine;
}

} // namespace

TEST(Deadline, AnEffectThatDoesNotReturnIsLeftOutUntilItDoes) {
    StuckUnit stuck;
    const auto engine = realTimeEngine(stuck.unit);
    testing::internal::CaptureStderr();
    ASSERT_FALSE(engine->start());
    ASSERT_TRUE(stuck.inside->wait());
    const auto other = std::make_shared<TestUnit>();
    std::atomic<int> blocks{0};
    other->testProcessor->work = [&](const Block&) { ++blocks; };
    EXPECT_LT(timeOf([&] {
                  engine->attachNode(other);
                  engine->connect(other, engine->mainMixerNode(), std::nullopt);
              }),
              InTime);
    EXPECT_LT(timeOf([&] {
                  engine->detachNode(stuck.unit);
                  engine->attachNode(stuck.unit);
                  engine->connect(stuck.unit, engine->mainMixerNode(), std::nullopt);
              }),
              AtOnce);
    EXPECT_LT(timeOf([&] { engine->stop(); }), InTime);
    EXPECT_FALSE(engine->isRunning());
    EXPECT_EQ(blocks, 0);
    // The engine continues on another thread, without the effect.
    EXPECT_LT(timeOf([&] { EXPECT_FALSE(engine->start()); }), AtOnce);
    EXPECT_TRUE(waitFor([&] { return blocks > 3; }));
    EXPECT_EQ(stuck.unit->testProcessor->releases, 0);
    // The effect is heard again after it has returned.
    *stuck.release = true;
    EXPECT_TRUE(stuck.inside->wait(3));
    EXPECT_LT(timeOf([&] { engine->detachNode(stuck.unit); }), AtOnce);
    EXPECT_EQ(stuck.unit->testProcessor->releases, 1);
    EXPECT_LT(timeOf([&] { engine->stop(); }), AtOnce);
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "The effect \"Stuck\" has not returned from rendering in 2 seconds; it is left out until it "
              "does.\nThe effect \"Stuck\" has returned.\n");
}

TEST(Deadline, AnEffectThatNeverReturnsDoesNotHoldTheEndOfItsEngine) {
    StuckUnit stuck;
    auto engine = realTimeEngine(stuck.unit);
    testing::internal::CaptureStderr();
    ASSERT_FALSE(engine->start());
    ASSERT_TRUE(stuck.inside->wait());
    EXPECT_LT(timeOf([&] { engine->detachNode(stuck.unit); }), InTime);
    EXPECT_LT(timeOf([&] { engine.reset(); }), InTime);
    EXPECT_NE(testing::internal::GetCapturedStderr().find("\"Stuck\""), std::string::npos);
    EXPECT_EQ(stuck.unit->testProcessor->releases, 0); // a thread still executes the effect
}

TEST(Deadline, NoEditWaitsForAnEffectThatIsMadeReady) {
    OfflineEngine offline;
    const auto unit = std::make_shared<TestUnit>();
    Signal begun;
    std::atomic<bool> release{false};
    unit->testProcessor->onAllocate = [&] {
        begun.raise();
        while (!release) std::this_thread::sleep_for(1ms);
    };
    offline.insert(unit);
    std::thread starter([&] { offline.start(); });
    ASSERT_TRUE(begun.wait());
    const auto other = AVAudioPlayerNode::create();
    EXPECT_LT(timeOf([&] {
                  EXPECT_FALSE(offline.engine->isRunning());
                  offline.engine->attachNode(other);
                  offline.engine->connect(other, offline.engine->mainMixerNode(), std::nullopt);
                  offline.engine->detachNode(unit);
              }),
              AtOnce);
    release = true;
    starter.join();
    EXPECT_TRUE(offline.engine->isRunning());
    EXPECT_EQ(unit->testProcessor->releases, 1); // its allocation ended after it was detached
}

TEST(Deadline, AMessageThatNobodyReadsHoldsNoEdit) {
    std::array<int, 2> pipe{};
    ASSERT_EQ(::pipe2(pipe.data(), O_NONBLOCK), 0);
    while (::write(pipe[1], "0123456789abcdef", 16) > 0) {
    }
    ASSERT_EQ(::fcntl(pipe[1], F_SETFL, 0), 0); // from now on writes block
    const int kept = ::dup(STDERR_FILENO);
    ::dup2(pipe[1], STDERR_FILENO);
    OfflineEngine offline;
    std::thread refused([&] {
        offline.engine->connect(std::make_shared<TestUnit>(), offline.engine->mainMixerNode(), std::nullopt);
    });
    std::this_thread::sleep_for(100ms); // by now the thread blocks on printing its message
    const auto taken = timeOf([&] {
        offline.engine->attachNode(AVAudioPlayerNode::create());
        EXPECT_FALSE(offline.engine->start());
    });
    ::dup2(kept, STDERR_FILENO);
    std::array<char, 65536> space{};
    while (::read(pipe[0], space.data(), space.size()) > 0) {
    }
    refused.join();
    for (const int descriptor : {pipe[0], pipe[1], kept}) ::close(descriptor);
    EXPECT_LT(taken, AtOnce);
}

TEST(Deadline, NoOneWaitsForAFileToBeOpened) {
    const Scratch folder;
    const std::string path = folder / "sound.wav";
    writeSound(path, countingSound(2, 441'000), 44100);
    const auto file = AVAudioFile::open(URL::fileURLWithPath(path));
    ASSERT_TRUE(file);
    OfflineEngine offline;
    offline.player->scheduleFile(file.value(), std::nullopt, nullptr); // uses the open decoder
    offline.start();
    EXPECT_FALSE(isSilent(offline.render(256)));
    ASSERT_EQ(::unlink(path.c_str()), 0);
    ASSERT_EQ(::mkfifo(path.c_str(), 0600), 0); // opening the path now blocks until someone writes to it
    const auto second = AVAudioPlayerNode::create();
    Signal completed;
    second->scheduleFile(file.value(), std::nullopt, [&] { completed.raise(); });
    std::this_thread::sleep_for(100ms); // by now the second decoder is opening the file
    EXPECT_LT(timeOf([&] {
                  second->play();
                  EXPECT_TRUE(second->isPlaying());
                  second->pause();
                  EXPECT_FALSE(second->isPlaying());
              }),
              AtOnce);
    EXPECT_LT(timeOf([&] {
                  offline.engine->attachNode(second);
                  offline.engine->connect(second, offline.engine->mainMixerNode(), std::nullopt);
              }),
              AtOnce);
    EXPECT_LT(timeOf([&] { second->stop(); }), InTime);
    EXPECT_TRUE(completed.wait());
    testing::internal::CaptureStderr();
    ::close(::open(path.c_str(), O_WRONLY)); // lets the decoder continue
    second->scheduleFile(makeFile(countingSound(2, 5000)), std::nullopt, [&] { completed.raise(); });
    second->play();
    offline.player->stop();
    (void)offline.render(6000);
    EXPECT_TRUE(completed.wait(2));
    EXPECT_NE(testing::internal::GetCapturedStderr().find("sound.wav"), std::string::npos);
}
