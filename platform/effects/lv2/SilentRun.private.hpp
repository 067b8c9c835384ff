// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An effect's processor that goes on running, on silence, while its interface is on the screen and the engine
// does not run it: many interfaces show what their effect answers, and an effect answers only while it runs.
// Private to platform/effects.
#pragma once

#include "platform/audio/NodeProcessor.hpp"

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace platform::lv2 {

class SilentRun final : public NodeProcessor {
  public:
    /// Wraps `processor`; `sampleRate` is the rate for a run before the engine has said one.
    SilentRun(std::shared_ptr<NodeProcessor> processor, double sampleRate);
    ~SilentRun() override;

    [[nodiscard]] std::uint32_t inputChannels() const noexcept override {
        return _processor->inputChannels();
    }
    [[nodiscard]] std::uint32_t outputChannels() const noexcept override {
        return _processor->outputChannels();
    }
    void setBlockFrames(std::uint32_t frames) override { _processor->setBlockFrames(frames); }
    [[nodiscard]] std::optional<Error> allocate(double sampleRate, std::uint32_t maximumFrames) override;
    void release() noexcept override;
    void process(const float* const* inputs, float* const* outputs, std::uint32_t frames,
                 std::int64_t sampleTime) noexcept override;
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept override {
        return _processor->latencyFrames();
    }

    /// Starts and ends running on silence. Main thread.
    void setWanted(bool isWanted);

    /// Returns whether a sample time is one of a run on silence: they are negative.
    [[nodiscard]] static bool isSilent(std::int64_t sampleTime) noexcept { return sampleTime < 0; }

  private:
    void runUntilUnwanted();
    void runFor(double seconds, std::int64_t& sampleTime);

    const std::shared_ptr<NodeProcessor> _processor;
    // Raised by the audio side at each block, lowered by the thread of the silent run: whether the engine
    // runs the effect. A block of the engine that meets the end of a silent one is silent.
    std::atomic<bool> _isRunByEngine{false};

    std::mutex _mutex; // guards what follows; also held for a block of silence, never by the audio side
    std::condition_variable _changed;
    bool _isWanted = false;
    bool _isAllocatedByEngine = false;
    double _sampleRate;
    std::thread _thread; // main thread only
};

} // namespace platform::lv2
