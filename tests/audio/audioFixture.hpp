// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shared by the tests of the engine: sound files whose samples are all different, an engine on the offline
// device, and a processor that the test controls.
#pragma once

#include "platform/audio/AVAudioEngine.hpp"
#include "platform/audio/AVAudioFile.hpp"
#include "platform/audio/AVAudioPlayerNode.hpp"
#include "platform/audio/NodeProcessor.hpp"
#include "platform/audio/OfflineDevice.hpp"
#include "platform/audio/seams.hpp"
#include "tests/support/signals.hpp"
#include "tests/support/waitFor.hpp"

namespace tonewright::test {

using Sound = std::vector<std::vector<float>>; // one vector per channel

/// Returns samples that differ between neighbours and channels, so that a misplaced frame is detected.
[[nodiscard]] Sound countingSound(std::uint32_t channels, std::size_t frames);
/// Writes `sound` as a wav file of floats.
void writeSound(const std::string& path, const Sound& sound, std::uint32_t rate);
/// Writes such a file, opens it and deletes it; the open file can still be played.
[[nodiscard]] std::shared_ptr<platform::AVAudioFile> makeFile(const Sound& sound, std::uint32_t rate = 44100);
[[nodiscard]] bool isSilent(const Sound& sound);
/// Returns `passes` copies of `sound`, one after the other.
[[nodiscard]] Sound repeated(const Sound& sound, std::size_t passes);
/// Returns the index of the first frame in which `a` and `b` differ, or the shorter length.
[[nodiscard]] std::size_t firstDifference(const Sound& a, const Sound& b);

/// An event that a test waits for, with a timeout that suits a loaded machine.
class Signal {
  public:
    void raise();
    [[nodiscard]] bool wait(int times = 1);

  private:
    std::mutex _mutex;
    std::condition_variable _changed;
    int _raised = 0;
};

/// The arguments of a processor's `process`.
struct Block {
    platform::ConstPlanarSound in;
    platform::PlanarSound out;
    std::uint32_t frames;
    std::int64_t time;
};

/// A stereo processor that the test controls.
class TestProcessor final : public platform::NodeProcessor {
  public:
    std::function<void(const Block&)> work; // null: multiply by `gain`
    float gain = 0.5F;
    std::atomic<double> rate{0};
    std::atomic<int> allocations{0}, releases{0};
    std::optional<platform::Error> failure;
    std::function<void()> onAllocate; // null: does nothing
    std::string called;               // the name that it reports

    [[nodiscard]] std::string name() const override { return called; }
    [[nodiscard]] std::uint32_t inputChannels() const noexcept override { return 2; }
    [[nodiscard]] std::uint32_t outputChannels() const noexcept override { return 2; }
    [[nodiscard]] std::optional<platform::Error> allocate(double sampleRate,
                                                          std::uint32_t maximumFrames) override;
    void release() noexcept override;
    void process(platform::ConstPlanarSound in, platform::PlanarSound out,
                 std::int64_t sampleTime) noexcept override;
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept override { return 0; }
};

class TestUnit final : public platform::AVAudioNode {
  public:
    const std::shared_ptr<TestProcessor> testProcessor = std::make_shared<TestProcessor>();
    [[nodiscard]] std::shared_ptr<platform::NodeProcessor> processor() const override {
        return testProcessor;
    }
};

/// An engine with a player connected to its mixer, on an offline device.
struct OfflineEngine : Uncopied {
    explicit OfflineEngine(platform::AVAudioFormat format = {44100, 2}, std::uint32_t blockFrames = 256);
    ~OfflineEngine();

    /// Schedules `file` again at every completion, until it has been scheduled `passes` times.
    void loop(const std::shared_ptr<platform::AVAudioFile>& file, int passes);
    /// Inserts `node` between player and mixer.
    void insert(const std::shared_ptr<platform::AVAudioNode>& node);
    /// Inserts a unit that does this work between player and mixer.
    std::shared_ptr<TestUnit> insertWork(std::function<void(const Block&)> work);
    void start();
    /// Starts the engine and plays `pass`, `passes` times.
    void play(const Sound& pass, int passes);
    [[nodiscard]] Sound render(std::size_t frames) { return device->render(frames); }

    std::shared_ptr<platform::OfflineDevice> device;
    std::shared_ptr<platform::AVAudioEngine> engine;
    std::shared_ptr<platform::AVAudioPlayerNode> player;
    std::atomic<int> completions{0};
    std::atomic<bool> ending{false};
};

} // namespace tonewright::test
