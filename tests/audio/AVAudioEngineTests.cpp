// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the graph and its edits, formats, and faulty processors.
#include "tests/audio/audioFixture.hpp"

using namespace platform;
using namespace tonewright::test;

namespace {

// Returns the largest difference from a continuous sine of amplitude 0.5, ignoring `skip` frames at both
// ends.
double worstErrorAgainstSine(const std::vector<float>& heard, double frequency, double rate,
                             std::size_t skip) {
    double worst = 0;
    for (std::size_t i = skip; i + skip < heard.size(); ++i) {
        const double expected =
            0.5 * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / rate);
        worst = std::max(worst, std::abs(heard[i] - expected));
    }
    return worst;
}

} // namespace

TEST(AVAudioEngine, ProcessesBetweenPlayerAndMixer) {
    const Sound pass = countingSound(2, 5000);
    OfflineEngine offline;
    std::vector<std::int64_t> times;
    times.reserve(100);
    const auto unit = offline.insertWork([&](const Block& block) {
        times.push_back(block.time);
        for (std::uint32_t c = 0; c < 2; ++c) {
            for (std::uint32_t i = 0; i < block.frames; ++i) block.out[c][i] = -block.in[c][i];
        }
    });
    offline.play(pass, 1);
    Sound heard = offline.render(5000);
    for (auto& plane : heard) {
        for (float& sample : plane) sample = -sample;
    }
    EXPECT_EQ(firstDifference(heard, pass), 5000U);
    ASSERT_GE(times.size(), 3U);
    EXPECT_EQ(times[0], 0);
    EXPECT_EQ(times[2], 512);
    EXPECT_EQ(unit->testProcessor->rate, 44100);

    offline.engine->stop();
    EXPECT_FALSE(offline.engine->isRunning());
    EXPECT_EQ(offline.device->claims(), 0);
    times.clear();
    EXPECT_TRUE(isSilent(offline.render(1000)));
    EXPECT_TRUE(times.empty()); // processing and its time start only with the engine
    offline.start();
    static_cast<void>(offline.render(256));
    ASSERT_EQ(times.size(), 1U);
    EXPECT_EQ(times[0], 0);
}

TEST(AVAudioEngine, GraphEdits) {
    OfflineEngine offline;
    offline.play(countingSound(2, 5000), 100);
    AVAudioEngine& engine = *offline.engine;
    EXPECT_FALSE(isSilent(offline.render(256)));

    engine.disconnectNodeInput(engine.mainMixerNode());
    EXPECT_TRUE(isSilent(offline.render(256)));
    engine.connect(offline.player, engine.mainMixerNode(), AVAudioFormat{44100, 2});
    engine.connect(offline.player, engine.mainMixerNode(),
                   AVAudioFormat{44100, 2}); // a repeated connection adds no second input
    const Sound once = offline.render(256);
    EXPECT_LT(*std::max_element(once[0].begin(), once[0].end()), 0.5F);
    EXPECT_FALSE(isSilent(once));

    // An effect is released when it is detached, and works again after it has been attached again.
    const auto unit = std::make_shared<TestUnit>();
    offline.insert(unit);
    EXPECT_FALSE(isSilent(offline.render(256)));
    engine.detachNode(unit);
    EXPECT_EQ(unit->testProcessor->releases, 1);
    EXPECT_TRUE(isSilent(offline.render(256)));
    offline.insert(unit);
    EXPECT_EQ(unit->testProcessor->allocations, 2);
    EXPECT_FALSE(isSilent(offline.render(256)));

    // A cycle is silent and does no harm.
    const auto second = std::make_shared<TestUnit>();
    engine.attachNode(second);
    engine.connect(unit, second, std::nullopt);
    engine.connect(second, unit, std::nullopt);
    static_cast<void>(offline.render(256));
    // Connections of nodes that are not attached, or are attached to another engine, are refused.
    engine.connect(std::make_shared<TestUnit>(), engine.mainMixerNode(), std::nullopt);
    const auto other = AVAudioEngine::create(std::make_shared<OfflineDevice>());
    other->attachNode(unit);
    other->connect(unit, other->mainMixerNode(), std::nullopt);
    static_cast<void>(offline.render(256));
}

TEST(AVAudioEngine, EditsWhileAnotherThreadRenders) {
    const auto file = makeFile(countingSound(2, 700));
    OfflineEngine offline;
    const auto unit = std::make_shared<TestUnit>();
    offline.loop(file, 1'000'000);
    offline.start();
    std::atomic<bool> rendering{true};
    std::thread audio([&] {
        while (rendering) static_cast<void>(offline.render(256));
    });
    AVAudioEngine& engine = *offline.engine;
    for (int i = 0; i < 300; ++i) {
        offline.insert(unit);
        if (i % 5 == 0) offline.device->setFormat({i % 10 == 0 ? 48000.0 : 44100.0, i % 3 == 0 ? 1U : 2U});
        engine.detachNode(unit);
        engine.connect(offline.player, engine.mainMixerNode(), file->processingFormat());
        if (i % 50 == 0) {
            engine.stop();
            EXPECT_FALSE(engine.start());
        }
    }
    rendering = false;
    audio.join();
}

TEST(AVAudioEngine, ConvertsTheRateOverSeams) {
    // Each pass has a whole number of periods, so the sine is continuous across the seams if the converter
    // is.
    for (const auto& [fileRate, deviceRate] :
         {std::pair{44100., 48000.}, {48000., 44100.}, {22050., 48000.}}) {
        const auto frames = static_cast<std::size_t>(fileRate) / 10;
        OfflineEngine offline({deviceRate, 2});
        const auto file =
            makeFile(Sound(2, sine(1000, 0.5, frames, fileRate)), static_cast<std::uint32_t>(fileRate));
        offline.engine->connect(offline.player, offline.engine->mainMixerNode(), file->processingFormat());
        offline.loop(file, 20);
        offline.start();
        const Sound heard = offline.render(static_cast<std::size_t>(deviceRate));
        EXPECT_LT(worstErrorAgainstSine(heard[0], 1000, deviceRate, 100), 1e-4)
            << fileRate << " to " << deviceRate;
        EXPECT_EQ(heard[0], heard[1]);
    }
}

TEST(AVAudioEngine, ConvertsChannels) {
    const Sound mono = countingSound(1, 1000), stereo = countingSound(2, 1000);
    OfflineEngine two({44100, 2}), one({44100, 1});
    two.play(mono, 1);
    EXPECT_EQ(two.render(1000), (Sound{mono[0], mono[0]}));
    one.play(stereo, 1);
    const Sound heard = one.render(1000);
    ASSERT_EQ(heard.size(), 1U);
    for (std::size_t i = 0; i < 1000; ++i) ASSERT_FLOAT_EQ(heard[0][i], 0.5F * (stereo[0][i] + stereo[1][i]));
}

TEST(AVAudioEngine, ALinkAfterAnEffectBringsTheSoundIntoItsFormat) {
    OfflineEngine offline({48000, 2});
    const auto opposed = offline.insertWork([](const Block& block) {
        std::fill_n(block.out[0], block.frames, 1.0F);
        std::fill_n(block.out[1], block.frames, -0.5F);
    });
    offline.engine->connect(opposed, offline.engine->mainMixerNode(), AVAudioFormat{48000, 1});
    offline.start();
    EXPECT_EQ(offline.render(256), Sound(2, std::vector<float>(256, 0.25F)));
}

// A connection with half the device's rate, before or after the effect, passes a tone below its band limit
// and blocks a tone above. Other edits of the graph do not disturb the sound.
TEST(AVAudioEngine, ALinksRateBoundsWhatPassesIt) {
    for (const bool isBehind : {false, true}) {
        for (const double frequency : {1000., 15000.}) {
            OfflineEngine offline({48000, 2});
            const auto unit = std::make_shared<TestUnit>();
            unit->testProcessor->gain = 1;
            offline.insert(unit);
            const std::shared_ptr<AVAudioNode> from = offline.player, mixer = offline.engine->mainMixerNode();
            offline.engine->connect(isBehind ? unit : from, isBehind ? mixer : unit, AVAudioFormat{24000, 2});
            offline.loop(makeFile(Sound(2, sine(frequency, 0.5, 48000, 48000)), 48000), 2);
            offline.start();
            std::vector<float> heard;
            for (const std::size_t frames : {1000U, 1U, 777U, 2048U, 3000U, 20000U}) { // uneven blocks
                const Sound block = offline.render(frames);
                heard.insert(heard.end(), block[0].begin(), block[0].end());
                const auto other = AVAudioPlayerNode::create();
                offline.engine->attachNode(other);
                offline.engine->connect(other, mixer, std::nullopt);
            }
            // Finds the delay of the output, which is a whole number of frames.
            double best = 1;
            for (std::ptrdiff_t late = 0; late < 600; ++late) {
                best = std::min(
                    best, worstErrorAgainstSine({heard.begin() + late, heard.end()}, frequency, 48000, 100));
            }
            const double loudest = static_cast<double>(*std::max_element(heard.begin() + 1000, heard.end()));
            EXPECT_LT(frequency == 1000 ? best : loudest, 1e-3)
                << frequency << (isBehind ? " behind" : " before");
        }
    }
}

TEST(AVAudioEngine, StopWaitsForNoScheduleThatRanDry) {
    OfflineEngine offline;
    offline.loop(makeFile(countingSound(2, 1000)), 1);
    offline.start();
    std::thread audio([&] { static_cast<void>(offline.render(100'000)); });
    while (offline.completions == 0) std::this_thread::yield();
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // by now the render waits for another pass
    const auto begin = std::chrono::steady_clock::now();
    offline.engine->stop();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(500)); // limit: 2 s
    audio.join();
}

TEST(AVAudioEngine, PassesOfAnotherFormatJoinWithoutAGap) {
    const auto first = makeFile(Sound(2, sine(1000, 0.5, 4410, 44100)));
    const auto second = makeFile(Sound(1, sine(1000, 0.5, 4800, 48000)), 48000);
    OfflineEngine offline({44100, 2});
    for (const auto& file : {first, second, second, first}) {
        offline.player->scheduleFile(file, std::nullopt, nullptr);
    }
    offline.start();
    const Sound heard = offline.render(4 * 4410);
    EXPECT_LT(worstErrorAgainstSine(heard[0], 1000, 44100, 60), 0.01);
    EXPECT_LT(worstErrorAgainstSine(heard[1], 1000, 44100, 60), 0.01);
}

TEST(AVAudioEngine, AChangeOfTheDeviceMakesEffectsAnewAndLosesNoFrame) {
    OfflineEngine offline({44100, 2});
    const auto unit = std::make_shared<TestUnit>();
    offline.insert(unit);
    offline.play(Sound(2, sine(1000, 0.5, 44100, 44100)), 10);
    static_cast<void>(offline.render(4410));
    EXPECT_EQ(unit->testProcessor->rate, 44100);
    offline.device->setFormat({48000, 2});
    // The engine follows the device's rate on another thread; until then the device renders silence.
    EXPECT_TRUE(waitFor([&] { return unit->testProcessor->rate == 48000; }));
    EXPECT_EQ(offline.engine->outputNode()->outputFormatForBus(0), (AVAudioFormat{48000, 2}));
    EXPECT_TRUE(waitFor([&] { return !isSilent(offline.render(256)); }));
    const Sound heard =
        offline.render(48000); // still a sine of 1 kHz, with 1000 upward zero crossings per second
    int crossings = 0;
    for (std::size_t i = 1; i < heard[0].size(); ++i) {
        crossings += heard[0][i - 1] < 0 && heard[0][i] >= 0 ? 1 : 0;
    }
    EXPECT_NEAR(crossings, 1000, 1);
}

TEST(AVAudioEngine, SilencesWhatIsNoNumberAndSaysItOnce) {
    OfflineEngine offline;
    std::atomic<float> poison{0};
    offline.insertWork([&](const Block& block) {
        for (std::uint32_t c = 0; c < 2; ++c) std::copy_n(block.in[c], block.frames, block.out[c]);
        block.out[1][block.frames / 2] = poison;
    });
    offline.loop(makeFile(countingSound(2, 5000)), 5);
    testing::internal::CaptureStderr();
    offline.start();
    using Float = std::numeric_limits<float>;
    for (const float value : {Float::quiet_NaN(), -Float::infinity(), 0.25F}) {
        poison = value;
        EXPECT_EQ(isSilent(offline.render(1000)), value != 0.25F) << value;
    }
    offline.engine.reset(); // also ends the thread that reports the fault
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "The effect's output contains NaN or infinity; it is silenced.\n");
}

TEST(AVAudioEngine, AnEffectThatCannotBeMadeReadyIsSilent) {
    OfflineEngine offline;
    const auto unit = std::make_shared<TestUnit>();
    unit->testProcessor->failure = Error("test", 1, "It doesn't like this rate.");
    offline.insert(unit);
    offline.loop(makeFile(countingSound(2, 5000)), 5);
    testing::internal::CaptureStderr();
    offline.start();
    EXPECT_TRUE(isSilent(offline.render(1000)));
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "The effect is silent: It doesn't like this rate.\n");
}

TEST(AVAudioEngine, DenormalsCountAsZeroWhileItRenders) {
    OfflineEngine offline;
    volatile float result = 1;
    offline.insertWork([&](const Block& block) {
        volatile float tiny = std::numeric_limits<float>::min();
        result = tiny * 0.5F;
        for (std::uint32_t c = 0; c < 2; ++c) std::fill_n(block.out[c], block.frames, 0.0F);
    });
    offline.start();
    static_cast<void>(offline.render(256));
    EXPECT_EQ(result, 0.0F);
    volatile float tiny = std::numeric_limits<float>::min();
    EXPECT_NE(tiny * 0.5F, 0.0F); // the calling thread's setting was restored
}

#ifdef TONEWRIGHT_RTSAN
TEST(AVAudioEngineDeathTest, TheDetectorSeesAnAllocationOnTheAudioThread) {
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    OfflineEngine offline;
    offline.insertWork([](const Block& block) {
        const std::vector<float> forbidden(block.frames);
        for (std::uint32_t c = 0; c < 2; ++c) std::copy_n(forbidden.data(), block.frames, block.out[c]);
    });
    offline.start();
    EXPECT_DEATH(static_cast<void>(offline.render(256)), "RealtimeSanitizer|Real-time violation");
}
#endif
