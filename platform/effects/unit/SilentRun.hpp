// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs an effect's processor on silence while the effect's interface is visible and the engine does not run
// it. Many interfaces display values that the effect reports, and an effect reports only while it runs.
#pragma once

#include "platform/audio/NodeProcessor.hpp"

#include <future>
#include <memory>
#include <string>

namespace platform::lv2 {

class SilentRun final : public NodeProcessor {
  public:
    /// Wraps `processor`. `sampleRate` is used until the engine has set one.
    SilentRun(std::shared_ptr<NodeProcessor> processor, double sampleRate);
    ~SilentRun() override;

    [[nodiscard]] std::string name() const override;
    [[nodiscard]] std::uint32_t inputChannels() const noexcept override;
    [[nodiscard]] std::uint32_t outputChannels() const noexcept override;
    void setBlockFrames(std::uint32_t frames) override;
    void setOffline(bool isOffline) override;
    [[nodiscard]] std::optional<Error> allocate(double sampleRate, std::uint32_t maximumFrames) override;
    void release() noexcept override;
    void process(ConstPlanarSound inputs, PlanarSound outputs, std::int64_t sampleTime) noexcept override;
    [[nodiscard]] bool hasFailed() const noexcept override;
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept override;

    /// Starts or ends running on silence. Waits for the end for at most two seconds. Main thread.
    void setWanted(bool isWanted);

    /// Returns whether a sample time belongs to a silent run. Such sample times are negative.
    [[nodiscard]] static bool isSilent(std::int64_t sampleTime) noexcept { return sampleTime < 0; }

  private:
    struct Loop;
    const std::shared_ptr<Loop> _loop;
    std::shared_future<void> _ended; // ready when the last thread has ended; main thread only
};

} // namespace platform::lv2
