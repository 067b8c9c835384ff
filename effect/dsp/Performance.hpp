// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the player does: the notes that are held and the controllers' positions, as MIDI tells
// them. All channels count alike. Used on the audio thread; never allocates.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace tonewright::effect {

/// The part of a performance that a saved session brings back.
struct PerformanceSnapshot {
    std::array<std::int32_t, 4> notes{-1, -1, -1, -1}; ///< last tuning, latest first; -1 for none
    float modWheel = 0.F;                              ///< 0..1
};

/// Follows MIDI messages.
class Performance {
  public:
    static constexpr std::size_t ChordSize = 4;

    /// Takes one complete message; ignores what it has no use for and whatever is malformed.
    void handle(std::span<const std::uint8_t> message) noexcept;

    /// Returns to the state before the first message.
    void reset() noexcept { *this = {}; }

    /// Drops a tuning whose keys are up, so that the root control counts again.
    void forgetTuning() noexcept { chordCount_ = stackSize_ == 0 ? 0 : chordCount_; }

    /// Returns the note that tunes the effect: the latest one held, after release the last one
    /// held; -1 before the first.
    [[nodiscard]] int tuningNote() const noexcept { return chordCount_ == 0 ? -1 : chord_[0]; }

    /// Returns the notes of the tuning chord, latest first; kept after release.
    [[nodiscard]] std::span<const std::uint8_t> chord() const noexcept {
        return {chord_.data(), chordCount_};
    }

    /// Returns the latest note that is still held; -1 when none is.
    [[nodiscard]] int heldNote() const noexcept { return stackSize_ == 0 ? -1 : stack_[stackSize_ - 1]; }

    [[nodiscard]] float velocity() const noexcept { return velocity_; }   ///< -1..1, 0 before the first note
    [[nodiscard]] float bendSemitones() const noexcept { return bend_; }  ///< -2..2
    [[nodiscard]] float modWheel() const noexcept { return modWheel_; }   ///< 0..1, controller 1
    [[nodiscard]] float breath() const noexcept { return breath_; }       ///< 0..1, controller 2
    [[nodiscard]] float resonance() const noexcept { return resonance_; } ///< -1..1, controller 71
    [[nodiscard]] float decay() const noexcept { return decay_; }         ///< -1..1, controller 72
    [[nodiscard]] float brightness() const noexcept { return brightness_; } ///< -1..1, controller 74

    /// Tells once that all sound is to end (controller 120).
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

    std::array<std::uint8_t, 128> stack_{}; // held notes, the latest last; each at most once
    std::size_t stackSize_ = 0;
    std::array<bool, 128> keyDown_{};
    bool sustain_ = false;
    std::array<std::uint8_t, ChordSize> chord_{};
    std::size_t chordCount_ = 0;
    float velocity_ = 0.F;
    float bend_ = 0.F;
    float modWheel_ = 0.F;
    float breath_ = 0.F;
    float resonance_ = 0.F;
    float decay_ = 0.F;
    float brightness_ = 0.F;
    bool soundOff_ = false;
};

} // namespace tonewright::effect
