// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Small sound files for tests.
#pragma once

#include <bit>
#include <cstdint>
#include <fstream>
#include <string>
#include <vector>

namespace tonewright::test {

/// Writes 32-bit float samples, interleaved, as a WAV file (IEEE float, format tag 3).
inline void writeWav(const std::string& path, std::uint32_t sampleRate, std::uint16_t channels,
                     const std::vector<float>& interleaved) {
    static_assert(std::endian::native == std::endian::little, "the file's numbers are little-endian");
    const auto bytesOf = [](std::uint32_t number, std::size_t count) {
        return std::string(reinterpret_cast<const char*>(&number), count);
    };
    const auto frameBytes = static_cast<std::uint32_t>(channels * sizeof(float));
    const std::string data(reinterpret_cast<const char*>(interleaved.data()),
                           interleaved.size() * sizeof(float));
    const auto dataBytes = static_cast<std::uint32_t>(data.size());
    std::ofstream(path, std::ios::binary)
        << "RIFF" << bytesOf(36 + dataBytes, 4) << "WAVEfmt " << bytesOf(16, 4) << bytesOf(3, 2)
        << bytesOf(channels, 2) << bytesOf(sampleRate, 4) << bytesOf(sampleRate * frameBytes, 4)
        << bytesOf(frameBytes, 2) << bytesOf(32, 2) << "data" << bytesOf(dataBytes, 4) << data;
}

} // namespace tonewright::test
