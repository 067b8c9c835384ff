// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests effects in processes of their own that end or hang while they play.
#include "platform/audio/AVAudioEngine.hpp"
#include "platform/audio/OfflineDevice.hpp"
#include "platform/effects/outside/OutsideProcessor.hpp"
#include "platform/effects/unit/AudioUnit.hpp"
#include "platform/foundation/product.hpp"
#include "tests/effects/Rendering.hpp"
#include "tests/effects/effectProcesses.hpp"

#include <csignal>
#include <filesystem>
#include <fstream>
#include <sched.h>
#include <set>
#include <thread>

using namespace platform;
using namespace platform::test;

namespace {

constexpr const char* Gain = "urn:tonewright:test:gain";
constexpr std::uint32_t Block = 512;
constexpr double Rate = 48000;

std::shared_ptr<AUAudioUnit> makeOutside(const std::string& uri) {
    const Setting where(product::EffectProcessVariable, "own");
    return makeUnit(uri);
}

// Renders blocks at the pace of a sound card until it is destroyed. Counts the blocks by comparing their
// level with that of their input.
class Playing {
  public:
    explicit Playing(AUAudioUnit& unit)
        : _rendering(unit, Rate, Block)
        , _unit(unit)
        , _thread([this] { run(); }) {}
    ~Playing() {
        _isOver = true;
        _thread.join();
    }
    Playing(const Playing&) = delete;
    Playing& operator=(const Playing&) = delete;

    // Counts of blocks: dry ones equal the input, delayed by the latency; wet ones equal half the input.
    std::atomic<int> dry{0}, wet{0}, others{0};
    std::atomic<std::int64_t> longestMicroseconds{0};

  private:
    void run() {
        auto next = std::chrono::steady_clock::now();
        while (!_isOver) {
            const auto begin = std::chrono::steady_clock::now();
            _rendering.block();
            const auto taken = std::chrono::steady_clock::now() - begin;
            longestMicroseconds = std::max<std::int64_t>(
                longestMicroseconds, std::chrono::duration_cast<std::chrono::microseconds>(taken).count());
            const auto isAll = [this](float gain, std::size_t delay) {
                for (std::size_t i = delay; i < Block; ++i) {
                    if (_rendering.out(0)[i] != gain * _rendering.in(0)[i - delay]) return false;
                }
                return true;
            };
            ++(isAll(1, _unit.latencyFrames()) ? dry : isAll(0.5F, 0) ? wet : others);
            next += std::chrono::microseconds(static_cast<int>(1e6 * Block / Rate));
            std::this_thread::sleep_until(next);
        }
    }

    Rendering _rendering;
    AUAudioUnit& _unit;
    std::atomic<bool> _isOver{false};
    std::thread _thread;
};

bool soundsFor(const std::atomic<int>& blocks) {
    return waitFor([&, before = blocks.load()] { return blocks > before + 50; });
}

} // namespace

TEST(Outside, SoundsAsInside) {
    const auto render = [](AUAudioUnit& unit) {
        std::vector<float> sound;
        unit.processor()->setOffline(true);
        Rendering rendering(unit, 44100, 1024);
        unit.setCurrentPreset(AUAudioUnitPreset(3, ""));
        const std::uint8_t note[] = {0x90, 60, 100};
        EXPECT_TRUE(unit.sendMIDIEvent(note));
        for (const std::uint32_t frames :
             {256U, 1U, 63U, 1000U, 1024U, 64U, 512U, 1024U, 1024U, 1024U, 1024U, 1024U}) {
            rendering.block(frames);
            const auto& plane = rendering.out(1);
            sound.insert(sound.end(), plane.begin(), plane.begin() + frames);
        }
        return sound;
    };
    const auto inside = makeUnit("https://tonewright.example/lv2/tonewright");
    const auto outside = makeOutside("https://tonewright.example/lv2/tonewright");
    ASSERT_EQ(effectProcesses().size(), 1U);
    const std::vector<float> expected = render(*inside);
    EXPECT_TRUE(std::ranges::any_of(expected, [](float sample) { return std::abs(sample) > 0.01F; }));
    EXPECT_EQ(render(*outside), expected);
    EXPECT_EQ(outside->fullState(), inside->fullState());
    EXPECT_EQ(outside->latencyFrames(), inside->latencyFrames());
}

TEST(Outside, GoesOnWhenAProcessIsKilled) {
    // Opens the descriptors that waiting needs.
    ASSERT_TRUE(waitFor([count = 0]() mutable { return ++count == 2; }));
    const auto descriptors = openDescriptors();
    {
        const auto unit = makeOutside(Gain);
        unit->setParameterValue(unit->parameters().front().address, 0.5F);
        Playing playing(*unit);
        ASSERT_TRUE(waitFor([] { return effectProcesses().size() == 2; }));
        ASSERT_TRUE(soundsFor(playing.wet)); // meanwhile the spare is started
        // On a busy machine a block may be late for another reason, so there are two attempts.
        int lost = 2;
        for (int attempt = 0; attempt < 2 && lost > 1; ++attempt) {
            const int dry = playing.dry;
            const pid_t first = firstEffectProcess();
            ASSERT_NE(first, 0);
            ::kill(first, SIGKILL);
            ASSERT_TRUE(waitFor([first] {
                const auto processes = effectProcesses();
                return processes.size() == 2 && processes.front() != first;
            }));
            ASSERT_TRUE(soundsFor(playing.wet));
            lost = playing.dry - dry;
        }
        EXPECT_LE(lost, 1);
        for (const pid_t process : effectProcesses()) ::kill(process, SIGKILL);
        EXPECT_TRUE(soundsFor(playing.dry)); // for some seconds no process runs
        EXPECT_TRUE(soundsFor(playing.wet));
        EXPECT_LE(playing.others, 20); // blocks with fades
    }
    EXPECT_TRUE(effectProcesses().empty());
    EXPECT_EQ(openDescriptors(), descriptors);
}

TEST(Outside, SoundsAgainAfterAReload) {
    const auto unit = makeOutside(Gain);
    unit->setParameterValue(unit->parameters().front().address, 0.5F);
    auto& processor =
        dynamic_cast<lv2::OutsideProcessor&>(dynamic_cast<lv2::AudioUnit&>(*unit).lv2Processor());
    Playing playing(*unit);
    std::set<pid_t> killed;
    for (const std::size_t together : {2U, 2U, 1U}) {
        ASSERT_TRUE(waitFor([&] { return effectProcesses().size() >= together; }));
        for (const pid_t process : effectProcesses()) {
            if (killed.size() < 5 && killed.insert(process).second) ::kill(process, SIGKILL);
        }
        ASSERT_TRUE(waitFor([&] {
            return std::ranges::none_of(effectProcesses(), [&](pid_t p) { return killed.contains(p); });
        }));
    }
    EXPECT_EQ(killed.size(), 5U);
    EXPECT_TRUE(soundsFor(playing.dry));
    EXPECT_TRUE(effectProcesses().empty());
    const int wet = playing.wet;
    EXPECT_TRUE(soundsFor(playing.dry));
    EXPECT_EQ(playing.wet, wet);
    processor.reload();
    EXPECT_TRUE(soundsFor(playing.wet));
}

TEST(Outside, PassesOnOnlyAFewLinesThatAnEffectPrints) {
    testing::internal::CaptureStderr();
    const auto begin = std::chrono::steady_clock::now();
    {
        const auto unit = makeOutside("urn:tonewright:test:chattering");
        unit->processor()->setOffline(true); // one process, which is not ended for being late
        Rendering rendering(*unit, Rate, Block);
        for (int i = 0; i < 400; ++i) {
            rendering.block();
            std::this_thread::sleep_for(std::chrono::milliseconds(4));
        }
    }
    const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - begin;
    std::istringstream printed(testing::internal::GetCapturedStderr());
    int lines = 0, longLines = 0, dropped = 0;
    for (std::string line; std::getline(printed, line);) {
        int count = 0;
        if (line == "Test chattering: a line") {
            ++lines;
        } else if (line == "Test chattering: " + std::string(1024, 'x') + " [...]") {
            ++longLines;
        } else if (std::sscanf(line.c_str(), "Test chattering: %d more line", &count) == 1) {
            dropped += count;
        } else {
            ADD_FAILURE() << line;
        }
    }
    EXPECT_GE(longLines, 1);
    EXPECT_GE(lines, 20);
    EXPECT_LE(lines, 20 * (taken.count() + 1));
    // No line is lost without being counted. Each block may be run in several pieces of the same length.
    EXPECT_GE(lines + dropped, 5 * 400);
    EXPECT_EQ((lines + dropped) % (5 * 400), 0);
}

TEST(Outside, KeepsNoSpareOfAnEffectThatNeedsMuchMemory) {
    const auto unit = makeOutside("urn:tonewright:test:large");
    const Playing playing(*unit);
    ASSERT_TRUE(waitFor([&] { return playing.others + playing.wet + playing.dry > 100; }));
    EXPECT_EQ(effectProcesses().size(), 1U);
}

TEST(Outside, PlaysTheInputWhileAnEffectHangs) {
    const auto unit = makeOutside("urn:tonewright:test:hangingrun");
    Playing playing(*unit);
    ASSERT_TRUE(waitFor([&] { return playing.dry > 250; }));
    EXPECT_EQ(playing.wet + playing.others, 0);
    // The limit is much longer than a block, because other work on the machine can delay this thread.
    EXPECT_LT(playing.longestMicroseconds, 500'000);
}

TEST(Outside, FailsTheRenderingOfflineWhenAProcessIsKilled) {
    const auto device = std::make_shared<OfflineDevice>(AVAudioFormat{Rate, 2}, 8192);
    const auto engine = AVAudioEngine::create(device);
    const auto node = std::make_shared<AVAudioUnit>(makeOutside(Gain));
    engine->attachNode(node);
    engine->connect(node, engine->mainMixerNode(), std::nullopt);
    std::vector<float> left(10'000), right(10'000);
    float* const planes[] = {left.data(), right.data()};
    ASSERT_FALSE(engine->start());
    EXPECT_FALSE(device->render(planes, left.size()));
    const pid_t process = firstEffectProcess();
    ASSERT_NE(process, 0);
    ::kill(process, SIGKILL);
    // The next process knows nothing of the sound before.
    ASSERT_TRUE(waitFor([process] {
        const pid_t next = firstEffectProcess();
        return next != 0 && next != process;
    }));
    const auto failure = device->render(planes, left.size());
    ASSERT_TRUE(failure);
    EXPECT_NE(failure->localizedDescription().find("\"Test gain\" has ended"), std::string::npos);
    EXPECT_TRUE(waitFor([&] {
        engine->stop();
        return !engine->start() && !device->render(planes, left.size());
    }));
}

TEST(Outside, RunsOnTheProcessorOfTheThreadThatWaits) {
    const auto unit = makeOutside(Gain);
    const auto processors = [] {
        cpu_set_t allowed;
        ::sched_getaffinity(0, sizeof allowed, &allowed);
        return allowed;
    };
    // Returns the real-time priorities of the effect's threads.
    const auto priorities = [] {
        std::multiset<int> found;
        for (const auto& task :
             std::filesystem::directory_iterator("/proc/" + std::to_string(firstEffectProcess()) + "/task")) {
            sched_param parameter{};
            ::sched_getparam(std::stoi(task.path().filename().string()), &parameter);
            if (parameter.sched_priority > 0) found.insert(parameter.sched_priority);
        }
        return found;
    };
    std::thread([&] {
        sched_param parameter{};
        parameter.sched_priority = 7;
        if (::sched_setscheduler(0, SCHED_FIFO, &parameter) != 0) {
            return; // without the right to it: nothing to see
        }
        const cpu_set_t before = processors();
        unit->processor()->setOffline(true); // where a process may run for long without sleeping
        {
            Rendering rendering(*unit, Rate, Block);
            for (int i = 0; i < 100; ++i) rendering.block();
            EXPECT_TRUE(priorities().empty());
        }
        unit->processor()->setOffline(false);
        {
            Rendering rendering(*unit, Rate, Block);
            bool isPlaced = false;
            for (int i = 0; i < 2000 && !isPlaced; ++i) {
                rendering.block();
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
                const cpu_set_t now = processors();
                isPlaced = CPU_COUNT(&now) == 1 && priorities() == std::multiset{6};
            }
            EXPECT_TRUE(isPlaced);
        }
        const cpu_set_t after = processors();
        EXPECT_TRUE(CPU_EQUAL(&before, &after));
    }).join();
}
