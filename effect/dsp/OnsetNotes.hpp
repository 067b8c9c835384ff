// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Converts onsets to MIDI notes: a note-on for each onset, and a note-off when the note's length has passed
// or the next note begins. Every note-on is followed by its note-off, even if the host's buffer is too small
// for all messages. Used on the audio thread; never allocates.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tonewright::effect {

/// A MIDI message for the host, with its frame in the current block.
struct OutgoingMidi {
    std::uint32_t frame = 0;
    std::array<std::uint8_t, 3> bytes{};
};

/// Collects the messages of one block. The capacity is far larger than the onsets of a block can need.
class MidiOutbox {
  public:
    static constexpr std::size_t Capacity = 128;

    /// Removes all messages. `room` is the number of messages that fit into the host's buffer.
    void beginBlock(std::size_t room) noexcept {
        _count = 0;
        _room = room < Capacity ? room : Capacity;
    }

    [[nodiscard]] std::size_t room() const noexcept { return _room - _count; }

    bool push(OutgoingMidi message) noexcept {
        if (room() == 0) {
            return false;
        }
        _messages[_count++] = message;
        return true;
    }

    [[nodiscard]] std::span<const OutgoingMidi> messages() const noexcept {
        return {_messages.data(), _count};
    }

  private:
    std::array<OutgoingMidi, Capacity> _messages{};
    std::size_t _count = 0;
    std::size_t _room = 0;
};

/// Begins and ends the notes; at most one note is on at a time.
class OnsetNotes {
  public:
    void reset() noexcept { _sounding = -1; }

    /// Begins a note. Skips it if there is no space for its messages.
    void onset(std::uint8_t note, std::uint8_t velocity, int lengthFrames, std::uint32_t frame,
               MidiOutbox& outbox) noexcept {
        const std::size_t needed = _sounding >= 0 ? 2 : 1;
        if (outbox.room() < needed) {
            return;
        }
        end(frame, outbox);
        if (outbox.push({frame, {0x90, note, velocity}})) {
            _sounding = note;
            _framesLeft = lengthFrames;
        }
    }

    /// Advances by one frame.
    void advance(std::uint32_t frame, MidiOutbox& outbox) noexcept {
        if (_sounding >= 0 && --_framesLeft <= 0) {
            end(frame, outbox);
        }
    }

    /// Ends the current note, if any. If there is no space for the note-off, `advance` tries again.
    void end(std::uint32_t frame, MidiOutbox& outbox) noexcept {
        if (_sounding >= 0 && outbox.push({frame, {0x80, static_cast<std::uint8_t>(_sounding), 0x40}})) {
            _sounding = -1;
        }
        _framesLeft = _sounding >= 0 ? 0 : _framesLeft;
    }

  private:
    int _sounding = -1;
    int _framesLeft = 0;
};

} // namespace tonewright::effect
