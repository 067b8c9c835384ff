// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Keeps an effect's processor running, on silence, while its interface is on the screen and the engine does
// not run it: many interfaces show their effect's answers, and an effect answers only while it runs.
#pragma once

#include "platform/audio/NodeProcessor.hpp"

#include <future>
#include <memory>
#include <string>

namespace platform::lv2 {

class SilentRun final : public NodeProcessor {
  public:
    /// Wraps `processor`; `sampleRate` is the rate for a run before the engine has set one.
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
    [[nodiscard]] std::uint32_t latencyFrames() const noexcept override;

    /// Starts or ends running on silence; waits for the end for at most two seconds. Main thread.
    void setWanted(bool isWanted);

    /// Returns whether a sample time belongs to a run on silence: they are negative.
    [[nodiscard]] static bool isSilent(std::int64_t sampleTime) noexcept { return sampleTime < 0; }

  private:
    struct Loop;
    const std::shared_ptr<Loop> _loop;
    std::shared_future<void> _ended; // the loop's last thread; main thread only
};

} // namespace platform::lv2
