// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Small sound files for tests, written by hand.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace tonewright::test {

/// Writes 32-bit float samples, interleaved, as a WAV file (IEEE float, format tag 3).
void writeWav(const std::string& path, std::uint32_t sampleRate, std::uint16_t channels,
              const std::vector<float>& interleaved);

} // namespace tonewright::test
