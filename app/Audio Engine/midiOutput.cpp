// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/Audio Engine/midiOutput.hpp"

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/foundation/console.hpp"

#include <algorithm>
#include <array>
#include <string>

namespace tonewright {
namespace {

constexpr std::int64_t ExpectedLength = 3; // a channel message: status and two data bytes

void report(std::int64_t sampleTime, std::int64_t length, const std::array<std::uint8_t, 3>& bytes) {
    if (length != ExpectedLength) {
        platform::print("AUEnginePlayer::WARNING: The MIDI data length is not as expected.");
    }
    platform::print("AUEnginePlayer: MIDI event from audio unit at: " + std::to_string(sampleTime) +
                    ", data: " + std::to_string(bytes[0]) + ", " + std::to_string(bytes[1]) + ", " +
                    std::to_string(bytes[2]));
}

} // namespace

std::int32_t logMIDIOutputEvent(std::int64_t sampleTime, std::uint8_t, std::int64_t length,
                                const std::uint8_t* data) {
    std::array<std::uint8_t, 3> bytes{};
    if (data != nullptr) {
        std::copy_n(data, std::clamp<std::int64_t>(length, 0, ExpectedLength), bytes.begin());
    }
    platform::DispatchQueue::main().async([sampleTime, length, bytes] { report(sampleTime, length, bytes); });
    return 0;
}

} // namespace tonewright
