// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/foundation/ByteCountFormatter.hpp"

#include <charconv>
#include <cstring>
#include <string_view>

namespace platform {
namespace {

struct Unit {
    std::uint64_t size;
    std::string_view text;
    unsigned decimals;
};

constexpr Unit Units[] = {
    {1'000'000'000'000'000'000, " EB", 2},
    {1'000'000'000'000'000, " PB", 2},
    {1'000'000'000'000, " TB", 2},
    {1'000'000'000, " GB", 2},
    {1'000'000, " MB", 1},
    {1'000, " KB", 0},
};

char* writeText(char* text, std::string_view piece) {
    std::memcpy(text, piece.data(), piece.size());
    return text + piece.size();
}

} // namespace

char* ByteCountFormatter::writeByteCount(char* text, std::int64_t byteCount) {
    if (byteCount == 0) return writeText(text, "Zero KB");
    auto count = static_cast<std::uint64_t>(byteCount);
    if (byteCount < 0) {
        *text++ = '-';
        count = 0 - count;
    }
    if (count < 1000) {
        text = std::to_chars(text, text + 3, count).ptr;
        return writeText(text, count == 1 ? " byte" : " bytes");
    }
    const Unit* unit = Units;
    while (count < unit->size) ++unit;
    const unsigned scale = unit->decimals == 2 ? 100 : unit->decimals == 1 ? 10 : 1;
    const std::uint64_t step = unit->size / scale; // one unit of the last decimal
    std::uint64_t rounded = count / step;
    const std::uint64_t rest = count % step;
    if (rest > step / 2 || (rest == step / 2 && rounded % 2 == 1)) ++rounded;
    text = std::to_chars(text, text + 20, rounded / scale).ptr;
    if (const auto fraction = static_cast<unsigned>(rounded % scale); fraction != 0) {
        *text++ = '.';
        if (scale == 100) *text++ = static_cast<char>('0' + fraction / 10);
        if (fraction % 10 != 0) *text++ = static_cast<char>('0' + fraction % 10);
    }
    return writeText(text, unit->text);
}

std::string ByteCountFormatter::stringFromByteCount(std::int64_t byteCount, ByteCountStyle) {
    char text[ByteCountLength];
    return {text, writeByteCount(text, byteCount)};
}

} // namespace platform
