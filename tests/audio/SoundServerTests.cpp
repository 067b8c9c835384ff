// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// With a real PipeWire server: what is recorded from its sink is what was played.
#include "platform/audio/AVAudioSession.hpp"
#include "platform/audio/OutputDevice.hpp"
#include "platform/audio/devices/AutomaticDevice.hpp"
#include "tests/audio/audioFixture.hpp"

#include <csignal>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

extern char** environ; // POSIX leaves its declaration to the program

using namespace platform;
using namespace tonewright::test;

namespace {

using std::chrono::milliseconds;

pid_t spawn(std::vector<std::string> words) {
    std::vector<char*> arguments;
    for (std::string& word : words) arguments.push_back(word.data());
    arguments.push_back(nullptr);
    pid_t pid = -1;
    return posix_spawnp(&pid, arguments[0], nullptr, nullptr, arguments.data(), environ) == 0 ? pid : -1;
}

// Records the test's sink as raw floats.
class Recording {
  public:
    explicit Recording(std::string path)
        : _path(std::move(path))
        , _process(spawn({"pw-record", "--format", "f32", "--rate", "48000", "--channels", "2", "--latency",
                          "1024", "-P", "{ stream.capture.sink=true node.name=test-recording }", "--target",
                          "tonewright-sink", _path})) {
        for (int i = 0; i < 15000 && size() < 4096; ++i) std::this_thread::sleep_for(milliseconds(1));
    }
    ~Recording() { stop(); }
    Recording(const Recording&) = delete;
    Recording& operator=(const Recording&) = delete;

    [[nodiscard]] std::size_t size() const {
        std::error_code error;
        const auto bytes = std::filesystem::file_size(_path, error);
        return error ? 0 : static_cast<std::size_t>(bytes);
    }

    // The left channel, from the first sound on.
    std::vector<float> stop() {
        if (_process > 0) {
            kill(_process, SIGINT);
            waitpid(_process, nullptr, 0);
            _process = -1;
        }
        std::ifstream in(_path, std::ios::binary);
        std::vector<char> bytes(std::istreambuf_iterator<char>(in), {});
        std::vector<float> left;
        constexpr std::size_t Head = 256; // of the file, all of which looks like silence or a click
        for (std::size_t at = Head; at + 8 <= bytes.size(); at += 8) {
            float sample = 0;
            std::memcpy(&sample, bytes.data() + at, sizeof sample);
            if (sample != 0.0F || !left.empty()) left.push_back(sample);
        }
        return left;
    }

  private:
    std::string _path;
    pid_t _process;
};

} // namespace

TEST(SoundServer, HearsEveryFrameOverTheSeams) {
    ASSERT_NE(std::getenv("TONEWRIGHT_SOUND_DIR"), nullptr) << "run this beside tools/sound-server";
    TemporaryFolder folder;
    const Sound pass = countingSound(2, 9999);
    const auto file = makeFile(folder.path("pass.wav"), pass, 48000);
    constexpr int Passes = 8;
    const std::vector<float> expected = repeated(pass, Passes)[0];
    bool exact = false;
    // A machine with other work loses blocks now and then; a fault of ours would show every time.
    for (int attempt = 0; attempt < 5 && !exact; ++attempt) {
        Recording recording(folder.path("recording" + std::to_string(attempt) + ".wav"));
        const auto engine = AVAudioEngine::create();
        const auto player = AVAudioPlayerNode::create();
        engine->attachNode(player);
        engine->connect(player, engine->mainMixerNode(), file->processingFormat());
        AVAudioSession& session = AVAudioSession::sharedInstance();
        ASSERT_FALSE(session.setActive(true, AVAudioSession::SetActiveOptions::None));
        EXPECT_EQ(engine->outputNode()->outputFormatForBus(0), (AVAudioFormat{48000, 2}));
        Signal done;
        for (int i = 0; i < Passes; ++i) player->scheduleFile(file, std::nullopt, [&] { done.raise(); });
        ASSERT_FALSE(engine->start());
        player->play();
        EXPECT_TRUE(done.wait(Passes));
        std::this_thread::sleep_for(milliseconds(700)); // what is in the ring, and the recorder's buffer
        player->stop();
        engine->stop();
        ASSERT_FALSE(session.setActive(false, AVAudioSession::SetActiveOptions::None));
        const std::vector<float> heard = recording.stop();
        exact =
            heard.size() >= expected.size() && std::equal(expected.begin(), expected.end(), heard.begin());
    }
    EXPECT_TRUE(exact);
}

TEST(SoundServer, GoesAndComesBackUnderPlayback) {
    const char* source = std::getenv("TONEWRIGHT_SOURCE_DIR");
    ASSERT_NE(source, nullptr);
    const std::string server = std::string(source) + "/tools/sound-server";
    TemporaryFolder folder;
    const auto file = makeFile(folder.path("pass.wav"), countingSound(2, 4800), 48000);
    const auto device = std::dynamic_pointer_cast<AutomaticDevice>(sharedOutputDevice());
    ASSERT_TRUE(device);
    const auto engine = AVAudioEngine::create();
    const auto player = AVAudioPlayerNode::create();
    engine->attachNode(player);
    engine->connect(player, engine->mainMixerNode(), std::nullopt);
    std::atomic<int> passes{0};
    std::atomic<bool> ending{false};
    std::function<void()> again = [&] {
        ++passes;
        if (!ending) player->scheduleFile(file, std::nullopt, again);
    };
    player->scheduleFile(file, std::nullopt, again);
    const auto eventually = [](const std::function<bool()>& holds) {
        for (int i = 0; i < 30000; ++i) {
            if (holds()) return true;
            std::this_thread::sleep_for(milliseconds(1));
        }
        return false;
    };
    const auto goesOn = [&] {
        const int before = passes;
        return eventually([&] { return passes > before + 5; });
    };
    testing::internal::CaptureStderr();
    ASSERT_FALSE(engine->start());
    player->play();
    EXPECT_TRUE(goesOn());
    EXPECT_TRUE(device->isAudible());
    EXPECT_EQ(std::system((server + " stop >/dev/null 2>&1").c_str()), 0);
    EXPECT_TRUE(eventually([&] { return !device->isAudible(); }));
    EXPECT_TRUE(goesOn());
    EXPECT_EQ(std::system((server + " start >/dev/null 2>&1").c_str()), 0);
    EXPECT_TRUE(eventually([&] { return device->isAudible(); }));
    EXPECT_TRUE(goesOn());
    ending = true;
    player->stop();
    engine->stop();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "The sound output has gone; playing silently until that changes.\n");
}
