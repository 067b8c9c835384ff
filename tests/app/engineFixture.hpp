// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An engine player on the offline device, with its printed lines, its reports and short files to play.
#pragma once

#include "app/Audio Engine/AUEnginePlayer.hpp"
#include "platform/audio/AVAudioSession.hpp"
#include "tests/support/InProcessEffect.hpp"

namespace tonewright::test {

/// Records the engine player's reports.
class RecordingDelegate final : public AUEnginePlayerDelegate {
  public:
    std::vector<bool> states;
    Lines files;
    std::vector<std::int64_t> loops;
    std::function<void(const std::string& event)> inside; // called in each report; may free this delegate

    void onPlayerStateChanged(bool playing) override {
        states.push_back(playing);
        report(playing ? "starts" : "stops");
    }
    void onFileSelect(const std::string& file) override {
        files.push_back(file);
        report("file");
    }
    void onLoop(std::int64_t count) override {
        loops.push_back(count);
        report("loop");
    }

  private:
    void report(const std::string& event) const {
        if (const auto act = inside) act(event);
    }
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
        platform::setSessionFaults({});
        // Deactivates the session, which a test leaves active if it releases a player that plays.
        EXPECT_FALSE(session.setActive(false, platform::AVAudioSession::SetActiveOptions::None));
        platform::setSharedOutputDevice(nullptr);
    }

    /// Writes a file of constant `value` and returns its location.
    platform::URL constantFile(const std::string& name, std::size_t frames, float value,
                               std::uint32_t channels = 2) const {
        writeSound(scratch / name, Sound(channels, std::vector<float>(frames, value)), 48000);
        return platform::URL::fileURLWithPath(scratch / name, false);
    }

    std::vector<float> render(std::uint64_t frames) { return device->render(frames).front(); }
    /// Renders and runs the main queue until `done`; returns the samples of the left channel.
    std::vector<float> renderUntil(const std::function<bool()>& done) {
        std::vector<float> heard;
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(20);
        while (!done() && std::chrono::steady_clock::now() < end) {
            const auto block = render(256);
            heard.insert(heard.end(), block.begin(), block.end());
            platform::RunLoop::current().runUntil(done, 0.001);
        }
        EXPECT_TRUE(done());
        return heard;
    }
    static void runMainQueue() { platform::RunLoop::current().runFor(0.02); }

    /// Returns the lines since the last call, after the main queue has run.
    Lines takeLines() {
        runMainQueue();
        return output.take();
    }
    /// Expects that the next lines contain each of these in this order; other lines may come between them.
    void expectInOrder(const Lines& wanted) {
        const Lines lines = takeLines();
        auto from = lines.begin();
        for (const auto& line : wanted) {
            from = std::find(from, lines.end(), line);
            ASSERT_NE(from, lines.end()) << line << " is missing in " << testing::PrintToString(lines);
        }
    }

    const Scratch scratch;
    CapturedOutput output;
    std::shared_ptr<platform::OfflineDevice> device = std::make_shared<platform::OfflineDevice>();
    std::shared_ptr<RecordingDelegate> delegate = std::make_shared<RecordingDelegate>();
    std::shared_ptr<AUEnginePlayer> player;
};

inline bool holdsLine(const Lines& lines, const std::string& start) {
    return std::any_of(lines.begin(), lines.end(), [&](const auto& line) { return line.starts_with(start); });
}

} // namespace tonewright::test
