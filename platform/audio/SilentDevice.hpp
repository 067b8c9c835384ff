// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An output that discards the sound. Requests sound in real time, so that playback advances as usual.
#pragma once

#include "platform/audio/OutputDevice.hpp"

#include <memory>
#include <mutex>
#include <thread>

namespace platform {

class SilentDevice final : public OutputDevice {
  public:
    explicit SilentDevice(AVAudioFormat format = DefaultOutputFormat, std::uint32_t blockFrames = 256);
    ~SilentDevice() override;

    [[nodiscard]] std::optional<Error> open() override { return std::nullopt; }
    void close() noexcept override {}
    [[nodiscard]] std::optional<Error> start(std::shared_ptr<OutputClient> client) override;
    void stop() noexcept override;
    [[nodiscard]] AVAudioFormat format() const noexcept override { return _format; }
    [[nodiscard]] std::uint32_t blockFrames() const noexcept override { return _blockFrames; }

  private:
    struct Run;

    const AVAudioFormat _format;
    const std::uint32_t _blockFrames;
    std::mutex _mutex;         // guards _run and _thread
    std::shared_ptr<Run> _run; // null while stopped
    std::thread _thread;
};

} // namespace platform
