// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An output that is rendered on request, as fast as possible: for rendering to files, tests and benchmarks.
// The sound never has gaps, because the client waits for the players' decoders.
#pragma once

#include "platform/audio/OutputDevice.hpp"
#include "platform/realtime/Gate.hpp"

#include <atomic>
#include <memory>
#include <mutex>
#include <vector>

namespace platform {

class OfflineDevice final : public OutputDevice {
  public:
    /// `blockFrames` is the largest number of frames requested at a time.
    explicit OfflineDevice(AVAudioFormat format = DefaultOutputFormat, std::uint32_t blockFrames = 256);

    [[nodiscard]] std::optional<Error> open() override;
    void close() noexcept override;
    [[nodiscard]] std::optional<Error> start(std::shared_ptr<OutputClient> client) override;
    void stop() noexcept override;
    [[nodiscard]] AVAudioFormat format() const noexcept override;
    [[nodiscard]] std::uint32_t blockFrames() const noexcept override { return _blockFrames; }
    [[nodiscard]] bool isOffline() const noexcept override { return true; }

    /// Renders `frames` frames into `planes`, one plane for each channel; silence while no client runs.
    /// Returns the reason if an effect has ended since the start; from there on the sound is silence. Any
    /// thread.
    [[nodiscard]] std::optional<Error> render(float* const* planes, std::uint64_t frames);
    /// Renders `frames` frames and returns them, one vector for each channel. A failure is reported on
    /// standard error.
    [[nodiscard]] std::vector<std::vector<float>> render(std::uint64_t frames);
    /// Changes the device's format, as when a user switches to another sound card. Returns before the client
    /// has adapted to the new format.
    void setFormat(AVAudioFormat format);
    /// Returns the number of open claims.
    [[nodiscard]] int claims() const;

  private:
    std::optional<Error> render(const AVAudioFormat& format, float* const* planes, std::uint64_t frames);

    // The state from `start` to `stop`.
    struct Run {
        std::shared_ptr<OutputClient> client;
        std::mutex turn{}; // locked by the thread that renders
        Gate gate{};       // around each call of the client
    };

    static void renderBlock(Run* run, PlanarSound sound, double sampleRate);

    mutable std::mutex _mutex; // guards the following members
    AVAudioFormat _format;
    std::shared_ptr<Run> _run; // null while stopped
    const std::uint32_t _blockFrames;
    std::atomic<int> _claims{0};
};

} // namespace platform
