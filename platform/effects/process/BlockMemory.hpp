// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The memory that the host shares with an effect's process: synchronisation words, the block of sound, the
// values of control ports, and the MIDI events that the block sent.
//
// Shared between processes: at any time it is the turn of one side, and the plain members of the header, the
// planes and the MIDI area belong to that side. The host does not trust data from this memory: it copies the
// data first and then checks the copy.
#pragma once

#include "platform/effects/process/futex.hpp"
#include "platform/foundation/Descriptor.hpp"
#include "platform/foundation/Result.hpp"
#include "platform/realtime/PlanarView.hpp"

#include <span>
#include <vector>

namespace platform::lv2 {

/// Where and how the effect's sound thread runs. Aligned so that every compiler accesses it in one
/// instruction.
struct alignas(8) Placement {
    std::int32_t processor = -1; // -1: any of its process
    std::int32_t priority = 0;   // SCHED_FIFO; 0: no real-time priority

    friend bool operator==(const Placement&, const Placement&) = default;
};
static_assert(std::atomic<Placement>::is_always_lock_free);

struct BlockHeader {
    // Owned by the process's sound thread for as long as the thread lives.
    OwnedWord alive;
    // Owned by the sound thread while it is that thread's turn. The host stores the thread's ID here to pass
    // the turn, and the thread stores 0 to return it. When the thread ends, the kernel checks this word after
    // `alive`. A host that passes the turn while the thread ends therefore sees at least one of the words
    // abandoned.
    alignas(64) OwnedWord turn;
    // Number of blocks passed to the process, which waits for a change.
    alignas(64) FutexWord request{0};
    std::uint32_t frames = 0;
    std::int64_t sampleTime = 0;
    // Written by the host before `request`, also between blocks.
    std::atomic<Placement> placement{Placement{}};
    // The thread ID of the sound thread, set before the process answers its first message.
    alignas(64) std::atomic<std::uint32_t> thread{0};
    std::atomic<bool> hasNewValues{false}; // set by the host after it has changed values
    std::atomic<bool> wantsMidi{false};    // set by the host
    // The results of the block.
    std::uint32_t midiBytes = 0;  // bytes of the MIDI area in use
    std::uint32_t midiLosses = 0; // events that did not fit
};

/// The header of an event in the MIDI area. It is followed by `length` bytes and padding to a multiple of 8.
struct MidiRecord {
    std::int64_t sampleTime;
    std::uint32_t length;
    std::uint32_t reserved;
};

class BlockMemory {
  public:
    /// The longest block, in frames.
    static constexpr std::uint32_t LongestBlock = 8192;
    /// Space for 65,536 short events.
    static constexpr std::size_t MidiBytes = std::size_t{65536} * 24;

    /// The largest size of a MIDI event, in bytes.
    static constexpr std::uint32_t LongestMidi = 65536;

    struct Shape {
        std::uint32_t inputs = 0, outputs = 0; // channel counts
        std::uint32_t ports = 0;               // number of ports, each with a value
    };

    /// Creates memory for `shape`, whose size cannot be changed later, or returns the reason why that failed.
    /// Called by the host.
    [[nodiscard]] static Result<BlockMemory> create(const Shape& shape);
    /// Maps the memory that the host has created. The pages around each plane are made inaccessible, so that
    /// an effect that writes outside a plane crashes. Called by the effect's process.
    [[nodiscard]] static Result<BlockMemory> open(Descriptor file, const Shape& shape);
    BlockMemory(BlockMemory&& other) noexcept;
    BlockMemory& operator=(BlockMemory&&) = delete;
    ~BlockMemory();

    [[nodiscard]] int descriptor() const noexcept { return _file.get(); }
    [[nodiscard]] BlockHeader& header() const noexcept { return *_header; }
    /// Return the first `frames` frames of the block.
    [[nodiscard]] PlanarSound inputs(std::uint32_t frames) const noexcept {
        return {_planes.data(), _shape.inputs, frames};
    }
    [[nodiscard]] PlanarSound outputs(std::uint32_t frames) const noexcept {
        return {_planes.data() + _shape.inputs, _shape.outputs, frames};
    }
    /// Returns the values of the ports, by port index. The host sets the values of inputs, and the process
    /// also sets them when it restores a state; the process sets those of outputs after each block.
    [[nodiscard]] std::span<std::atomic<float>> values() const noexcept { return {_values, _shape.ports}; }
    [[nodiscard]] std::span<std::byte> midi() const noexcept { return {_midi, MidiBytes}; }

  private:
    BlockMemory(Descriptor file, const Shape& shape, std::byte* memory);

    Descriptor _file;
    Shape _shape;
    std::byte* _memory;
    BlockHeader* _header;
    std::atomic<float>* _values;
    std::byte* _midi;
    std::vector<float*> _planes; // inputs, then outputs
};

} // namespace platform::lv2
