// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Logs the MIDI events that an effect emits: one line each.
#pragma once

#include <cstdint>

namespace tonewright {

/// Logs one MIDI event on the main queue. Copies at most the first three of `length` bytes during the call
/// (missing ones count as 0, none are read through a null `data`), submits one task and returns 0. Any thread
/// that may lock, so not the audio thread: the platform calls it from its delivery thread.
std::int32_t logMIDIOutputEvent(std::int64_t sampleTime, std::uint8_t cable, std::int64_t length,
                                const std::uint8_t* data);

} // namespace tonewright
