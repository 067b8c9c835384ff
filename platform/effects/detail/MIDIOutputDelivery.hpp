// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Carries the MIDI events of one effect from the audio thread to a block that is called on a separate thread.
// The audio side writes into a lock-free ring of 65,536 events; bytes of long events go into a second ring.
// Events that do not fit are counted and reported on standard error by the delivery thread.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <thread>

namespace platform {

class MIDIOutputDelivery {
  public:
    /// `effectName` is used in reports of lost events.
    explicit MIDIOutputDelivery(std::string effectName);
    /// Delivers what was written and ends the thread. The audio side must have ended. On the delivery thread
    /// itself, inside the block, it does not wait for that.
    ~MIDIOutputDelivery();
    MIDIOutputDelivery(const MIDIOutputDelivery&) = delete;
    MIDIOutputDelivery& operator=(const MIDIOutputDelivery&) = delete;

    /// Passes events to `block` from now on; none stops that. Control side. When it returns, the previous
    /// block is not called any more, unless the call comes from inside it.
    void setBlock(MIDIOutputEventBlock block);

    /// Returns whether there is a block. Audio side.
    [[nodiscard]] bool isWanted() const noexcept;
    /// Queues one event. Audio side.
    void push(std::int64_t sampleTime, const std::uint8_t* data, std::uint32_t length) noexcept;
    /// Wakes the delivery thread, if anything was queued since the last call. Audio side, once per block.
    void flush() noexcept;

  private:
    struct Queue;
    const std::shared_ptr<Queue> _queue; // the thread has it too, and may outlive this
    std::thread _thread;
};

} // namespace platform
