// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An engine player on the offline device, with its lines, its reports and short files to play.
#pragma once

#include "app/Audio Engine/AUEnginePlayer.hpp"
#include "platform/audio/AVAudioSession.hpp"
#include "platform/audio/OfflineDevice.hpp"
#include "platform/dispatch/RunLoop.hpp"
#include "tests/support/CapturedOutput.hpp"
#include "tests/support/InProcessEffect.hpp"
#include "tests/support/Scratch.hpp"
#include "tests/support/wavFile.hpp"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace tonewright::test {

using Lines = std::vector<std::string>;

/// Writes down what the engine player reports.
class RecordingDelegate final : public AUEnginePlayerDelegate {
  public:
    std::vector<bool> states;
    Lines files;
    std::vector<std::int64_t> loops;

    void onPlayerStateChanged(bool playing) override { states.push_back(playing); }
    void onFileSelect(const std::string& file) override { files.push_back(file); }
    void onLoop(std::int64_t count) override { loops.push_back(count); }
};

class EngineFixture : public testing::Test {
  protected:
    EngineFixture() {
        platform::setSharedOutputDevice(device);
        player = std::make_shared<AUEnginePlayer>();
        player->delegate = delegate;
    }
    ~EngineFixture() override {
        if (player) player->finalize();
        runMainQueue();
        auto& session = platform::AVAudioSession::sharedInstance();
        session.setFaults({});
        // A player that a test released while it played has left the session active.
        EXPECT_FALSE(session.setActive(false, platform::AVAudioSession::SetActiveOptions::None));
        platform::setSharedOutputDevice(nullptr);
    }

    /// Writes a file of constant `value` and returns its location.
    platform::URL constantFile(const std::string& name, int frames, float value,
                               std::uint16_t channels = 2) const {
        const std::string path = scratch / name;
        writeWav(path, 48000, channels,
                 std::vector<float>(static_cast<std::size_t>(frames) * channels, value));
        return platform::URL::fileURLWithPath(path, false);
    }
    platform::URL rawFile(const std::string& name, const std::string& bytes) const {
        return platform::URL::fileURLWithPath(scratch.file(name, bytes), false);
    }

    /// Renders until `done`, with the main queue running; returns what was heard on the left.
    std::vector<float> renderUntil(const std::function<bool()>& done, double timeoutSeconds = 20);
    std::vector<float> render(int frames);
    static void runMainQueue() { platform::RunLoop::current().runFor(0.02); }

    /// Returns the lines since the last call, after the main queue has run.
    Lines takeLines() {
        runMainQueue();
        return output.take();
    }

    const Scratch scratch;
    CapturedOutput output;
    std::shared_ptr<platform::OfflineDevice> device = std::make_shared<platform::OfflineDevice>();
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    std::shared_ptr<AUEnginePlayer> player;
};

/// Returns whether `lines` hold each of `wanted`, in that order, others between them allowed.
[[nodiscard]] testing::AssertionResult holdInOrder(const Lines& lines, const Lines& wanted);
[[nodiscard]] bool holdsLine(const Lines& lines, const std::string& start);

} // namespace tonewright::test
