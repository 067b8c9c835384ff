// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The player's performance: the held notes and the controllers' positions, from MIDI. All channels are
// treated alike. Used on the audio thread; never allocates.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tonewright::effect {

/// The part of a performance that a saved session restores.
struct PerformanceSnapshot {
    std::array<std::int32_t, 4> notes{-1, -1, -1, -1}; ///< last tuning, latest first; -1 for none
    float modWheel = 0.F;                              ///< 0..1
};

/// Follows MIDI messages.
class Performance {
  public:
    static constexpr std::size_t ChordSize = 4;

    /// Handles one complete message; ignores messages that are of no use or malformed.
    void handle(std::span<const std::uint8_t> message) noexcept;

    /// Returns to the state before the first message.
    void reset() noexcept { *this = {}; }

    /// Forgets a tuning whose keys have been released, so that the root control counts again.
    void forgetTuning() noexcept { _chordCount = _stackSize == 0 ? 0 : _chordCount; }

    /// Returns the note that tunes the effect: the latest held one or, after release, the last one held; -1
    /// before the first.
    [[nodiscard]] int tuningNote() const noexcept { return _chordCount == 0 ? -1 : _chord[0]; }

    /// Returns the notes of the tuning chord, latest first; kept after release.
    [[nodiscard]] std::span<const std::uint8_t> chord() const noexcept {
        return {_chord.data(), _chordCount};
    }

    /// Returns the latest note that is still held; -1 when none is.
    [[nodiscard]] int heldNote() const noexcept { return _stackSize == 0 ? -1 : _stack[_stackSize - 1]; }

    [[nodiscard]] float velocity() const noexcept { return _velocity; }   ///< -1..1, 0 before the first note
    [[nodiscard]] float bendSemitones() const noexcept { return _bend; }  ///< -2..2
    [[nodiscard]] float modWheel() const noexcept { return _modWheel; }   ///< 0..1, controller 1
    [[nodiscard]] float breath() const noexcept { return _breath; }       ///< 0..1, controller 2
    [[nodiscard]] float resonance() const noexcept { return _resonance; } ///< -1..1, controller 71
    [[nodiscard]] float decay() const noexcept { return _decay; }         ///< -1..1, controller 72
    [[nodiscard]] float brightness() const noexcept { return _brightness; } ///< -1..1, controller 74

    /// Returns whether all sound is to end (controller 120), once for each request.
    [[nodiscard]] bool takeSoundOff() noexcept;

    [[nodiscard]] PerformanceSnapshot snapshot() const noexcept;
    void restore(const PerformanceSnapshot& snapshot) noexcept;

  private:
    void noteOn(std::uint8_t note, std::uint8_t velocity) noexcept;
    void noteOff(std::uint8_t note) noexcept;
    void controller(std::uint8_t number, std::uint8_t value) noexcept;
    void removeFromStack(std::uint8_t note) noexcept;
    void releaseSustained() noexcept;
    void releaseAll() noexcept;
    void retune() noexcept;

    std::array<std::uint8_t, 128> _stack{}; // held notes, the latest last; each at most once
    std::size_t _stackSize = 0;
    std::array<bool, 128> _keyDown{};
    bool _sustain = false;
    std::array<std::uint8_t, ChordSize> _chord{};
    std::size_t _chordCount = 0;
    float _velocity = 0.F;
    float _bend = 0.F;
    float _modWheel = 0.F;
    float _breath = 0.F;
    float _resonance = 0.F;
    float _decay = 0.F;
    float _brightness = 0.F;
    bool _soundOff = false;
};

} // namespace tonewright::effect
