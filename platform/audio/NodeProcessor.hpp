// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The interface through which the engine renders nodes that it does not implement itself: effects. The
// control side calls all operations except `process`. While `process` may be running, the control side calls
// only the operations that are marked below as safe to call concurrently.
#pragma once

#include "platform/audio/AVAudioFormat.hpp"
#include "platform/foundation/Error.hpp"
#include "platform/realtime/PlanarView.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace platform {

class NodeProcessor {
  public:
    NodeProcessor() = default;
    virtual ~NodeProcessor() = default;
    NodeProcessor(const NodeProcessor&) = delete;
    NodeProcessor& operator=(const NodeProcessor&) = delete;

    /// Returns the name used in messages; may be empty. Any thread.
    [[nodiscard]] virtual std::string name() const { return {}; }
    /// Return the channel counts of the inputs and the outputs of `process`. Constant for the life of the
    /// processor; may be 0.
    [[nodiscard]] virtual std::uint32_t inputChannels() const noexcept = 0;
    [[nodiscard]] virtual std::uint32_t outputChannels() const noexcept = 0;

    /// Sets the usual block length in frames. Blocks may be shorter, or longer up to the maximum passed to
    /// `allocate`. May be called concurrently with `process`.
    virtual void setBlockFrames(std::uint32_t /*frames*/) {}
    /// Sets whether blocks are rendered offline. `process` may then wait for work that a block depends on.
    /// Called before `allocate`, never concurrently with `process`.
    virtual void setOffline(bool /*isOffline*/) {}
    /// Prepares for blocks of at most `maximumFrames` frames at `sampleRate`. A call with another rate
    /// prepares again and keeps all settings; a call with the same values does nothing.
    [[nodiscard]] virtual std::optional<Error> allocate(double sampleRate, std::uint32_t maximumFrames) = 0;
    /// Releases the resources that `allocate` created; keeps all settings.
    virtual void release() noexcept = 0;

    /// Processes `inputs` into `outputs`. Both have the same number of frames (1 to maximumFrames) and never
    /// overlap. `sampleTime` is the number of frames rendered since the engine started. Audio thread: never
    /// allocates, locks or logs. It may wait for an effect's own process, until a deadline within the time
    /// that the block lasts.
    virtual void process(ConstPlanarSound inputs, PlanarSound outputs, std::int64_t sampleTime) noexcept = 0;

    /// Returns whether the effect has ended during this run of the engine, and with it the sound. Only
    /// offline: in real time the sound goes on without the effect. Any thread.
    [[nodiscard]] virtual bool hasFailed() const noexcept { return false; }
    /// Returns the latency: the number of frames that the output lags behind the input. Any thread.
    [[nodiscard]] virtual std::uint32_t latencyFrames() const noexcept = 0;
};

} // namespace platform
