// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Receives the MIDI events that an effect sends, on the audio side.
#pragma once

#include <cstdint>

namespace platform {

class MidiSink {
  public:
    MidiSink() = default;
    virtual ~MidiSink() = default;
    MidiSink(const MidiSink&) = delete;
    MidiSink& operator=(const MidiSink&) = delete;

    /// Returns whether the receiver needs the events. Audio side.
    [[nodiscard]] virtual bool isWanted() const noexcept = 0;
    /// Receives one event of `length` bytes, at frame `sampleTime` of the engine. Audio side.
    virtual void push(std::int64_t sampleTime, const std::uint8_t* data, std::uint32_t length) noexcept = 0;
    /// Forwards the events received since the last call. Audio side, once per block.
    virtual void flush() noexcept = 0;
};

} // namespace platform
