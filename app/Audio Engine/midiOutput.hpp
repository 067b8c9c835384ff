// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Logs the MIDI events that an effect sends, one line for each.
#pragma once

#include <cstdint>

namespace tonewright {

/// Logs one MIDI event on the main queue and returns 0. Copies at most the first three of the `length` bytes
/// before returning; missing bytes are logged as 0, and `data` may be null. Any thread except the audio
/// thread, because the function locks and allocates; the platform calls it from its MIDI delivery thread.
std::int32_t logMIDIOutputEvent(std::int64_t sampleTime, std::uint8_t cable, std::int64_t length,
                                const std::uint8_t* data);

} // namespace tonewright
