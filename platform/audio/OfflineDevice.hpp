// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The output that is rendered on request, as fast as the machine can: for bouncing, tests and benchmarks.
// Nothing is ever missing from it: the client waits for the player's decoder where necessary.
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
    /// `blockFrames`: the largest number of frames requested at a time.
    explicit OfflineDevice(AVAudioFormat format = DefaultOutputFormat, std::uint32_t blockFrames = 256);

    [[nodiscard]] std::optional<Error> open() override;
    void close() noexcept override;
    [[nodiscard]] std::optional<Error> start(std::shared_ptr<OutputClient> client) override;
    void stop() noexcept override;
    [[nodiscard]] AVAudioFormat format() const noexcept override;
    [[nodiscard]] std::uint32_t blockFrames() const noexcept override { return _blockFrames; }
    [[nodiscard]] bool isOffline() const noexcept override { return true; }

    /// Renders `frames` frames into `planes`, one for each channel; silence while nothing runs. Any thread.
    void render(float* const* planes, std::uint64_t frames);
    /// Renders `frames` frames and returns them, one vector for each channel.
    [[nodiscard]] std::vector<std::vector<float>> render(std::uint64_t frames);
    /// Changes the device's format, as when a user plugs in another card. The client reacts in its own time.
    void setFormat(AVAudioFormat format);
    /// Returns the number of open claims.
    [[nodiscard]] int claims() const;

  private:
    void render(const AVAudioFormat& format, float* const* planes, std::uint64_t frames);

    // One use by a client.
    struct Run {
        std::shared_ptr<OutputClient> client;
        std::mutex turn{}; // held for the length of one block
        Gate gate{};       // around each call of the client
    };

    void renderBlock(std::shared_ptr<Run>& run, PlanarSound sound, double sampleRate);

    mutable std::mutex _mutex; // guards the following members
    AVAudioFormat _format;
    std::shared_ptr<Run> _run; // null while stopped
    const std::uint32_t _blockFrames;
    std::atomic<int> _claims{0};
};

} // namespace platform
