// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Writes the MIDI events of a block into the memory shared with the host. Used on the sound thread of the
// effect's process.
#pragma once

#include "platform/effects/detail/MidiSink.hpp"
#include "platform/effects/process/BlockMemory.hpp"

#include <cstring>

namespace platform::lv2 {

class BlockMidi final : public MidiSink {
  public:
    explicit BlockMidi(const BlockMemory& memory)
        : _memory(memory) {}

    [[nodiscard]] bool isWanted() const noexcept override {
        return _memory.header().wantsMidi.load(std::memory_order_relaxed);
    }
    void push(std::int64_t sampleTime, const std::uint8_t* data, std::uint32_t length) noexcept override {
        const std::size_t size = (sizeof(MidiRecord) + length + 7) & ~std::size_t{7};
        const std::span<std::byte> space = _memory.midi().subspan(_used);
        if (size > space.size()) {
            ++_losses;
            return;
        }
        const MidiRecord record{.sampleTime = sampleTime, .length = length, .reserved = 0};
        std::memcpy(space.data(), &record, sizeof record);
        std::memcpy(space.data() + sizeof record, data, length);
        _used += size;
    }
    void flush() noexcept override {}

    /// Starts a block: removes the events of the previous one.
    void beginBlock() noexcept {
        _used = 0;
        _losses = 0;
    }
    /// Stores in the header how many bytes of the MIDI area the events use, and how many events did not fit.
    void endBlock() noexcept {
        _memory.header().midiBytes = static_cast<std::uint32_t>(_used);
        _memory.header().midiLosses = _losses;
    }

  private:
    const BlockMemory& _memory;
    std::size_t _used = 0;
    std::uint32_t _losses = 0;
};

} // namespace platform::lv2
