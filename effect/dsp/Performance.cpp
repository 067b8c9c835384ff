// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Performance.hpp"

#include <algorithm>

namespace tonewright::effect {
namespace {

constexpr float BendRangeSemitones = 2.F;

// 64 is the middle of a controller that moves both ways.
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
        return; // what is used here has two data bytes
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
        bend_ = BendRangeSemitones * std::clamp(static_cast<float>(position) / 8191.F, -1.F, 1.F);
        break;
    }
    default:
        break;
    }
}

bool Performance::takeSoundOff() noexcept {
    const bool off = soundOff_;
    soundOff_ = false;
    return off;
}

void Performance::noteOn(std::uint8_t note, std::uint8_t velocity) noexcept {
    removeFromStack(note);
    stack_[stackSize_++] = note;
    keyDown_[note] = true;
    velocity_ = centred(velocity);
    retune();
}

void Performance::noteOff(std::uint8_t note) noexcept {
    keyDown_[note] = false;
    if (!sustain_) {
        removeFromStack(note);
        retune();
    }
}

void Performance::controller(std::uint8_t number, std::uint8_t value) noexcept {
    switch (number) {
    case 1:
        modWheel_ = static_cast<float>(value) / 127.F;
        break;
    case 2:
        breath_ = static_cast<float>(value) / 127.F;
        break;
    case 64:
        sustain_ = value >= 64;
        if (!sustain_) {
            releaseSustained();
        }
        break;
    case 71:
        resonance_ = centred(value);
        break;
    case 72:
        decay_ = centred(value);
        break;
    case 74:
        brightness_ = centred(value);
        break;
    case 120:
        soundOff_ = true;
        releaseAll();
        break;
    case 121:
        bend_ = modWheel_ = breath_ = resonance_ = decay_ = brightness_ = velocity_ = 0.F;
        sustain_ = false;
        releaseSustained();
        break;
    case 123:
    case 124:
    case 125:
    case 126:
    case 127: // the mode messages imply all notes off
        releaseAll();
        break;
    default:
        break;
    }
}

void Performance::removeFromStack(std::uint8_t note) noexcept {
    auto* const end = stack_.data() + stackSize_;
    stackSize_ = static_cast<std::size_t>(std::remove(stack_.data(), end, note) - stack_.data());
}

void Performance::releaseSustained() noexcept {
    auto* const end = stack_.data() + stackSize_;
    auto* const kept =
        std::remove_if(stack_.data(), end, [this](std::uint8_t note) { return !keyDown_[note]; });
    stackSize_ = static_cast<std::size_t>(kept - stack_.data());
    retune();
}

void Performance::releaseAll() noexcept {
    stackSize_ = 0;
    keyDown_.fill(false);
}

void Performance::retune() noexcept {
    if (stackSize_ == 0) {
        return; // the last tuning stays when the keys are let go
    }
    chordCount_ = std::min(stackSize_, ChordSize);
    for (std::size_t i = 0; i < chordCount_; ++i) {
        chord_[i] = stack_[stackSize_ - 1 - i];
    }
}

PerformanceSnapshot Performance::snapshot() const noexcept {
    PerformanceSnapshot snapshot;
    std::copy_n(chord_.begin(), chordCount_, snapshot.notes.begin());
    snapshot.modWheel = modWheel_;
    return snapshot;
}

void Performance::restore(const PerformanceSnapshot& snapshot) noexcept {
    reset();
    for (const std::int32_t note : snapshot.notes) {
        if (note >= 0 && note <= 127) {
            chord_[chordCount_++] = static_cast<std::uint8_t>(note);
        }
    }
    modWheel_ = snapshot.modWheel >= 0.F && snapshot.modWheel <= 1.F ? snapshot.modWheel : 0.F;
}

} // namespace tonewright::effect
