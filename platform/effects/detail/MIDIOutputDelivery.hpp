// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Passes the MIDI events of an effect from the audio thread to a block that is called on a delivery thread.
// The audio thread writes into a lock-free ring of 65,536 events; the bytes of long events go into a second
// ring. The delivery thread reports the number of events that did not fit on standard error.
#pragma once

#include "platform/effects/AUAudioUnit.hpp"
#include "platform/effects/detail/MidiSink.hpp"

#include <cstdint>
#include <memory>
#include <string>
#include <thread>

namespace platform {

class MIDIOutputDelivery final : public MidiSink {
  public:
    /// `effectName` is used in the reports of lost events.
    explicit MIDIOutputDelivery(std::string effectName);
    /// Delivers the queued events and ends the thread. `push` must not be called any more. Waits until the
    /// thread has ended, except when the block itself destroys this object.
    ~MIDIOutputDelivery() override;

    /// Sets the block that receives events; an empty block stops the delivery. Control side. When this
    /// returns, the previous block has returned and is not called again, except when the previous block
    /// itself made this call.
    void setBlock(MIDIOutputEventBlock block);

    /// Returns whether a block is set. Audio thread.
    [[nodiscard]] bool isWanted() const noexcept override;
    /// Queues one event. Audio thread.
    void push(std::int64_t sampleTime, const std::uint8_t* data, std::uint32_t length) noexcept override;
    /// Adds `events` to the number of lost events, for events that were lost before `push` could be called.
    /// Audio thread.
    void countLost(std::uint32_t events) noexcept;
    /// Wakes the delivery thread if `push` was called since the last call. Audio thread, once per block.
    void flush() noexcept override;

  private:
    struct Queue;
    const std::shared_ptr<Queue> _queue; // shared with the thread, which may outlive this object
    std::thread _thread;
};

} // namespace platform
