// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "tests/support/wavFile.hpp"

#include <bit>
#include <cstring>
#include <fstream>

namespace tonewright::test {
namespace {

static_assert(std::endian::native == std::endian::little, "the file's numbers are little-endian");

template <class T>
void put(std::string& bytes, T value) {
    char raw[sizeof value];
    std::memcpy(raw, &value, sizeof value);
    bytes.append(raw, sizeof value);
}

} // namespace

void writeWav(const std::string& path, std::uint32_t sampleRate, std::uint16_t channels,
              const std::vector<float>& interleaved) {
    const auto dataBytes = static_cast<std::uint32_t>(interleaved.size() * sizeof(float));
    const auto frameBytes = static_cast<std::uint16_t>(channels * sizeof(float));
    std::string bytes = "RIFF";
    put<std::uint32_t>(bytes, 4 + 24 + 8 + dataBytes);
    bytes += "WAVEfmt ";
    put<std::uint32_t>(bytes, 16);
    put<std::uint16_t>(bytes, 3);
    put<std::uint16_t>(bytes, channels);
    put<std::uint32_t>(bytes, sampleRate);
    put<std::uint32_t>(bytes, sampleRate * frameBytes);
    put<std::uint16_t>(bytes, frameBytes);
    put<std::uint16_t>(bytes, 32);
    bytes += "data";
    put<std::uint32_t>(bytes, dataBytes);
    bytes.append(reinterpret_cast<const char*>(interleaved.data()), dataBytes);
    std::ofstream(path, std::ios::binary) << bytes;
}

} // namespace tonewright::test
