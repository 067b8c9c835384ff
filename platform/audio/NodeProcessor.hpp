// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The interface between the engine's graph and what makes the sound of a node that others supply: an effect.
// The control side calls everything except `process`. While the engine is in `process`, it calls only those
// other operations that may be called concurrently, as stated below.
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
    /// Returns the number of channels that `process` reads and writes; fixed for the life of the processor, 0
    /// allowed.
    [[nodiscard]] virtual std::uint32_t inputChannels() const noexcept = 0;
    [[nodiscard]] virtual std::uint32_t outputChannels() const noexcept = 0;

    /// Sets the usual number of frames of a block; a block may have fewer, or more up to the maximum of
    /// `allocate`. May be called concurrently with `process`.
    virtual void setBlockFrames(std::uint32_t /*frames*/) {}
    /// Sets whether blocks are rendered offline, so that the audio side may wait for what belongs to a block.
    /// Called before `allocate`, never concurrently with `process`.
    virtual void setOffline(bool /*isOffline*/) {}
    /// Prepares for blocks of at most `maximumFrames` frames at `sampleRate`. A call with another rate starts
    /// again with all settings kept; a call with the same values does nothing.
    [[nodiscard]] virtual std::optional<Error> allocate(double sampleRate, std::uint32_t maximumFrames) = 0;
    /// Releases what `allocate` created; settings stay.
    virtual void release() noexcept = 0;

    /// Fills `outputs` from `inputs`: the same number of frames in each (1 to maximumFrames), in planes that
    /// never overlap. `sampleTime` is the number of frames rendered since the engine started. Audio thread:
    /// never allocates, locks, blocks or logs.
    virtual void process(ConstPlanarSound inputs, PlanarSound outputs, std::int64_t sampleTime) noexcept = 0;

    /// Returns the frames by which the output lags the input. Any thread.
    [[nodiscard]] virtual std::uint32_t latencyFrames() const noexcept = 0;
};

} // namespace platform
