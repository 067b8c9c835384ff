// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Performance.hpp"

#include <algorithm>

namespace tonewright::effect {
namespace {

constexpr float BendRangeSemitones = 2.F;

// Maps 0..127 to -1..1, with 64 as the centre.
float centred(std::uint8_t value) noexcept {
    return std::clamp((static_cast<float>(value) - 64.F) / 63.F, -1.F, 1.F);
}

} // namespace

void Performance::handle(std::span<const std::uint8_t> message) noexcept {
    if (message.size() < 2 || message[0] < 0x80 || message[0] >= 0xF0 ||
        std::any_of(message.begin() + 1, message.end(), [](std::uint8_t byte) { return byte >= 0x80; })) {
        return;
    }
    const std::uint8_t kind = message[0] & 0xF0U;
    if (message.size() < 3) {
        return; // all messages used here have two data bytes
    }
    switch (kind) {
    case 0x80:
        noteOff(message[1]);
        break;
    case 0x90:
        message[2] == 0 ? noteOff(message[1]) : noteOn(message[1], message[2]);
        break;
    case 0xB0:
        controller(message[1], message[2]);
        break;
    case 0xE0: {
        const int position = message[1] + 128 * message[2] - 8192;
        _bend = BendRangeSemitones * std::clamp(static_cast<float>(position) / 8191.F, -1.F, 1.F);
        break;
    }
    default:
        break;
    }
}

bool Performance::takeSoundOff() noexcept {
    const bool off = _soundOff;
    _soundOff = false;
    return off;
}

void Performance::noteOn(std::uint8_t note, std::uint8_t velocity) noexcept {
    removeFromStack(note);
    _stack[_stackSize++] = note;
    _keyDown[note] = true;
    _velocity = centred(velocity);
    retune();
}

void Performance::noteOff(std::uint8_t note) noexcept {
    _keyDown[note] = false;
    if (!_sustain) {
        removeFromStack(note);
        retune();
    }
}

void Performance::controller(std::uint8_t number, std::uint8_t value) noexcept {
    switch (number) {
    case 1:
        _modWheel = static_cast<float>(value) / 127.F;
        break;
    case 2:
        _breath = static_cast<float>(value) / 127.F;
        break;
    case 64:
        _sustain = value >= 64;
        if (!_sustain) {
            releaseSustained();
        }
        break;
    case 71:
        _resonance = centred(value);
        break;
    case 72:
        _decay = centred(value);
        break;
    case 74:
        _brightness = centred(value);
        break;
    case 120:
        _soundOff = true;
        releaseAll();
        break;
    case 121:
        _bend = _modWheel = _breath = _resonance = _decay = _brightness = _velocity = 0.F;
        _sustain = false;
        releaseSustained();
        break;
    case 123:
    case 124:
    case 125:
    case 126:
    case 127: // mode messages, which imply all notes off
        releaseAll();
        break;
    default:
        break;
    }
}

void Performance::removeFromStack(std::uint8_t note) noexcept {
    auto* const end = _stack.data() + _stackSize;
    _stackSize = static_cast<std::size_t>(std::remove(_stack.data(), end, note) - _stack.data());
}

void Performance::releaseSustained() noexcept {
    auto* const end = _stack.data() + _stackSize;
    auto* const kept =
        std::remove_if(_stack.data(), end, [this](std::uint8_t note) { return !_keyDown[note]; });
    _stackSize = static_cast<std::size_t>(kept - _stack.data());
    retune();
}

void Performance::releaseAll() noexcept {
    _stackSize = 0;
    _keyDown.fill(false);
}

void Performance::retune() noexcept {
    if (_stackSize == 0) {
        return; // the tuning is kept when all keys are released
    }
    _chordCount = std::min(_stackSize, ChordSize);
    for (std::size_t i = 0; i < _chordCount; ++i) {
        _chord[i] = _stack[_stackSize - 1 - i];
    }
}

PerformanceSnapshot Performance::snapshot() const noexcept {
    PerformanceSnapshot snapshot;
    std::copy_n(_chord.begin(), _chordCount, snapshot.notes.begin());
    snapshot.modWheel = _modWheel;
    return snapshot;
}

void Performance::restore(const PerformanceSnapshot& snapshot) noexcept {
    reset();
    for (const std::int32_t note : snapshot.notes) {
        if (note >= 0 && note <= 127) {
            _chord[_chordCount++] = static_cast<std::uint8_t>(note);
        }
    }
    _modWheel = snapshot.modWheel >= 0.F && snapshot.modWheel <= 1.F ? snapshot.modWheel : 0.F;
}

} // namespace tonewright::effect
