// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "WavFile.hpp"

#include <bit>
#include <cstdint>
#include <fstream>
#include <string_view>

namespace tonewright::loops {

namespace {

void put(std::string& bytes, std::uint32_t value, unsigned count) {
    for (unsigned index = 0; index < count; ++index) {
        bytes.push_back(
            static_cast<char>((value >> (8U * index)) & 0xFFU)); // little-endian whatever the machine
    }
}

} // namespace

std::optional<std::string> writeWav(const Pcm& pcm, const std::filesystem::path& file) {
    const auto channels = static_cast<std::uint32_t>(pcm.channels.size());
    const auto frames = static_cast<std::uint32_t>(pcm.frames());
    const auto rate = static_cast<std::uint32_t>(pcm.rate);
    const std::uint32_t size = frames * channels * 4;
    constexpr std::uint32_t FloatFormat = 3;
    std::string bytes = "RIFF";
    put(bytes, 4 + 8 + 18 + 8 + 4 + 8 + size, 4);
    bytes += "WAVEfmt ";
    put(bytes, 18, 4);
    put(bytes, FloatFormat, 2);
    put(bytes, channels, 2);
    put(bytes, rate, 4);
    put(bytes, rate * channels * 4, 4);
    put(bytes, channels * 4, 2);
    put(bytes, 32, 2);
    put(bytes, 0, 2);
    bytes += "fact"; // asked of every format that is not plain integers
    put(bytes, 4, 4);
    put(bytes, frames, 4);
    bytes += "data";
    put(bytes, size, 4);
    for (std::size_t frame = 0; frame < pcm.frames(); ++frame) {
        for (const std::vector<float>& channel : pcm.channels) {
            put(bytes, std::bit_cast<std::uint32_t>(channel[frame]), 4);
        }
    }
    std::ofstream out(file, std::ios::binary);
    out.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    out.close();
    if (!out) return "the file could not be written";
    return std::nullopt;
}

} // namespace tonewright::loops
