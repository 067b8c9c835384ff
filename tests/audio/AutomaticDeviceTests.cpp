// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests losing the sound output and recovering it, with a hardware device that the test controls.
#include "platform/audio/devices/AutomaticDevice.hpp"
#include "tests/audio/audioFixture.hpp"

using namespace platform;
using namespace tonewright::test;

namespace {

using std::chrono::milliseconds;

// A sound server that can be absent, refuse connections, or not play.
struct Server {
    std::atomic<bool> present{true}, refuses{false}, plays{true};
    std::atomic<bool> frozen{false}; // accepts connections but never answers
    std::atomic<double> rate{48000};
    std::atomic<int> made{0}; // number of connections so far
    std::atomic<int> open{0}; // number of open connections
    std::mutex mutex;         // guards `listener`, which is invalid after its connection has ended
    HardwareListener* listener = nullptr;

    void lose() {
        present = false;
        const std::scoped_lock lock(mutex);
        if (listener != nullptr) listener->hardwareWasLost();
    }
    void changeRate(double newRate) {
        rate = newRate;
        const std::scoped_lock lock(mutex);
        if (listener != nullptr) listener->hardwareFormatDidChange();
    }
};

class FakeHardware final : public HardwareDevice {
  public:
    explicit FakeHardware(Server& server)
        : _server(server) {}
    ~FakeHardware() override {
        if (!_thread.joinable()) return;
        {
            const std::scoped_lock lock(_server.mutex);
            if (_server.listener != nullptr) _server.listener->hardwareWasLost(); // like PipeWire's stream
            _server.listener = nullptr;
        }
        _ended = true;
        _thread.join();
        --_server.open;
    }
    FakeHardware(const FakeHardware&) = delete;
    FakeHardware& operator=(const FakeHardware&) = delete;

    Answer open(HardwareListener& listener) override {
        for (int i = 0; i < 1000 && _server.frozen; ++i) std::this_thread::sleep_for(milliseconds(1));
        if (_server.frozen || !_server.present) return {.kind = Answer::Kind::Absent};
        if (_server.refuses) return {.kind = Answer::Kind::Refused, .error = Error("test", 1, "It refuses.")};
        ++_server.open;
        ++_server.made;
        const std::scoped_lock lock(_server.mutex);
        _server.listener = &listener;
        _thread = std::thread([this, &listener] { play(listener); });
        return {.kind = Answer::Kind::Opened};
    }
    void run(bool running) noexcept override { _running = running; }
    AVAudioFormat format() const noexcept override { return {_server.rate, 2}; }

  private:
    void play(HardwareListener& listener) {
        std::array<float, 256> left{}, right{};
        const std::array<float*, 2> planes{left.data(), right.data()};
        while (!_ended) {
            std::this_thread::sleep_for(milliseconds(2));
            if (_running && _server.plays && _server.present) {
                listener.hardwareRender({planes.data(), 2, 256}, _server.rate);
            }
        }
    }

    Server& _server;
    std::atomic<bool> _running{false}, _ended{false};
    std::thread _thread;
};

// A client that records the render requests of devices.
class Client final : public OutputClient {
  public:
    std::atomic<int> calls{0}, changes{0};
    std::atomic<double> rate{0};
    std::atomic<bool> inside{false}, overlapped{false};

    void render(PlanarSound sound, double sampleRate) noexcept override {
        if (inside.exchange(true)) overlapped = true; // two devices render at once
        for (std::uint32_t c = 0; c < sound.channels(); ++c) std::fill_n(sound[c], sound.frames(), 0.1F);
        rate = sampleRate;
        ++calls;
        inside = false;
    }
    void outputFormatDidChange() override { ++changes; }
};

struct AutomaticDeviceTest : testing::Test {
    Server server;
    std::shared_ptr<Client> client = std::make_shared<Client>();
    std::unique_ptr<AutomaticDevice> device = std::make_unique<AutomaticDevice>(
        std::vector<HardwareFactory>{[this] { return std::make_unique<FakeHardware>(server); }},
        AutomaticDevice::Limits{.streaming = milliseconds(300), .retry = milliseconds(30)});

    bool goesOn() {
        const int before = client->calls;
        return waitFor([&] { return client->calls > before + 3; });
    }
    ~AutomaticDeviceTest() override {
        device.reset();
        EXPECT_FALSE(client->overlapped);
        EXPECT_EQ(server.open, 0);
    }
};

constexpr auto Gone = "The sound output has gone; playing silently until that changes.\n";

} // namespace

TEST_F(AutomaticDeviceTest, ClaimsAreCountedAndTheLastReleases) {
    EXPECT_FALSE(device->open());
    EXPECT_EQ(server.open, 1);
    EXPECT_FALSE(device->start(client));
    EXPECT_TRUE(device->start(std::make_shared<Client>())); // a device has only one client
    EXPECT_TRUE(goesOn());
    device->stop();
    const int before = client->calls;
    std::this_thread::sleep_for(milliseconds(20));
    EXPECT_EQ(client->calls, before); // no call runs after stop
    EXPECT_EQ(server.open, 1);
    device->close();
    EXPECT_EQ(server.open, 0);
}

TEST_F(AutomaticDeviceTest, ALostServerIsSilentlyReplacedAndComesBackAndChangesItsRate) {
    testing::internal::CaptureStderr();
    ASSERT_FALSE(device->start(client));
    EXPECT_TRUE(goesOn());
    EXPECT_TRUE(device->isAudible());
    server.lose();
    EXPECT_TRUE(waitFor([&] { return !device->isAudible(); }));
    EXPECT_TRUE(goesOn());
    server.rate = 44100; // the server returns with another rate
    server.present = true;
    EXPECT_TRUE(waitFor([&] { return device->isAudible(); }));
    EXPECT_TRUE(waitFor([&] { return client->rate == 44100 && client->changes > 0; }));
    EXPECT_EQ(device->format(), (AVAudioFormat{44100, 2}));
    server.changeRate(96000);
    EXPECT_TRUE(waitFor([&] { return client->rate == 96000; }));
    device->stop();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), Gone);
}

TEST_F(AutomaticDeviceTest, AServerThatNeverPlaysIsReplacedUntilItDoes) {
    testing::internal::CaptureStderr();
    server.plays = false;
    ASSERT_FALSE(device->start(client));
    EXPECT_TRUE(goesOn());
    EXPECT_FALSE(device->isAudible());
    server.plays = true;
    EXPECT_TRUE(waitFor([&] { return device->isAudible(); }));
    EXPECT_TRUE(goesOn());
    device->stop();
    EXPECT_EQ(testing::internal::GetCapturedStderr(),
              "The sound server doesn't play; playing silently until that changes.\n");
}

TEST_F(AutomaticDeviceTest, AFrozenServerHoldsNobodyAndIsHeardOnceItAnswers) {
    testing::internal::CaptureStderr();
    server.frozen = true;
    auto shortest = std::chrono::steady_clock::duration::max(); // other load only makes presses longer
    for (int press = 0; press < 5; ++press) {
        const auto begin = std::chrono::steady_clock::now();
        EXPECT_FALSE(device->open());
        EXPECT_FALSE(device->start(client));
        shortest = std::min(shortest, std::chrono::steady_clock::now() - begin);
        EXPECT_TRUE(goesOn());
        if (press == 4) break;
        device->stop();
        device->close();
    }
    EXPECT_LT(shortest, milliseconds(50));
    EXPECT_FALSE(device->isAudible());
    server.frozen = false;
    EXPECT_TRUE(waitFor([&] { return device->isAudible(); }));
    EXPECT_TRUE(goesOn());
    device->stop();
    device->close();
    testing::internal::GetCapturedStderr();
}

TEST_F(AutomaticDeviceTest, ClosesHardwareThatIsNoLongerClaimedWhenItAnswers) {
    server.frozen = true;
    EXPECT_FALSE(device->open());
    device->close();
    server.frozen = false;
    EXPECT_TRUE(waitFor([&] { return server.made > 0 && server.open == 0; }));
}

TEST_F(AutomaticDeviceTest, OnlyARefusalFails) {
    server.refuses = true;
    const auto refused = device->open();
    ASSERT_TRUE(refused);
    EXPECT_EQ(refused->localizedDescription(), "It refuses.");
    EXPECT_TRUE(device->start(client));
    server.refuses = false;
    EXPECT_FALSE(device->start(client)); // the failure has no later effect
    EXPECT_TRUE(goesOn());
    device->stop();
}

TEST(SilentDevice, AsksAtThePaceOfTheClock) {
    const auto client = std::make_shared<Client>();
    SilentDevice silent({48000, 2}, 480);
    const auto start = std::chrono::steady_clock::now();
    ASSERT_FALSE(silent.start(client));
    EXPECT_TRUE(waitFor([&] { return client->calls >= 50; }));
    const double seconds = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    silent.stop();
    EXPECT_GE(seconds, 0.48); // 50 blocks of 10 ms, the first of them immediate
}
