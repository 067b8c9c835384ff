// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The state of the player's MIDI performance: the held notes and the positions of the controllers. All MIDI
// channels are treated alike. Used on the audio thread; never allocates.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tonewright::effect {

/// The part of the performance that is saved in a session.
struct PerformanceSnapshot {
    std::array<std::int32_t, 4> notes{-1, -1, -1,
                                      -1}; ///< notes of the tuning chord, latest first; -1 for none
    float modWheel = 0.F;                  ///< 0..1
};

/// Tracks the performance from MIDI messages.
class Performance {
  public:
    static constexpr std::size_t ChordSize = 4;

    /// Handles one complete message. Ignores unknown and malformed messages.
    void handle(std::span<const std::uint8_t> message) noexcept;

    /// Resets to the state before the first message.
    void reset() noexcept { *this = {}; }

    /// Discards the tuning if all keys are released, so that the root control sets the tuning again.
    void forgetTuning() noexcept { _chordCount = _stackSize == 0 ? 0 : _chordCount; }

    /// Returns the note that tunes the effect: the latest held note or, when all keys are released, the last
    /// note that was held. Returns -1 if there is no tuning.
    [[nodiscard]] int tuningNote() const noexcept { return _chordCount == 0 ? -1 : _chord[0]; }

    /// Returns the notes of the tuning chord, latest first. They are kept when the keys are released.
    [[nodiscard]] std::span<const std::uint8_t> chord() const noexcept {
        return {_chord.data(), _chordCount};
    }

    /// Returns the latest note that is still held, or -1.
    [[nodiscard]] int heldNote() const noexcept { return _stackSize == 0 ? -1 : _stack[_stackSize - 1]; }

    [[nodiscard]] float velocity() const noexcept { return _velocity; }   ///< -1..1, 0 before the first note
    [[nodiscard]] float bendSemitones() const noexcept { return _bend; }  ///< -2..2
    [[nodiscard]] float modWheel() const noexcept { return _modWheel; }   ///< 0..1, controller 1
    [[nodiscard]] float breath() const noexcept { return _breath; }       ///< 0..1, controller 2
    [[nodiscard]] float resonance() const noexcept { return _resonance; } ///< -1..1, controller 71
    [[nodiscard]] float decay() const noexcept { return _decay; }         ///< -1..1, controller 72
    [[nodiscard]] float brightness() const noexcept { return _brightness; } ///< -1..1, controller 74

    /// Returns whether All Sound Off (controller 120) was received since the last call.
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

    std::array<std::uint8_t, 128> _stack{}; // held notes, the latest last, without duplicates
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
