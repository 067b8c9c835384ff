// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/network/detail/ChunkedBody.hpp"

#include <algorithm>

namespace platform {
namespace {

constexpr std::uint64_t LargestChunk = std::uint64_t{1} << 62U;

int hexValue(unsigned char byte) noexcept {
    if (byte >= '0' && byte <= '9') return byte - '0';
    const unsigned char lower = byte | 0x20U;
    return lower >= 'a' && lower <= 'f' ? lower - 'a' + 10 : -1;
}

} // namespace

std::span<const std::byte> ChunkedBody::next(std::span<const std::byte>& bytes) noexcept {
    while (!bytes.empty() && _place != Place::Content && !isWhole() && !isBroken()) {
        _place = placeBehind(static_cast<unsigned char>(bytes.front()));
        bytes = bytes.subspan(1);
    }
    if (_place != Place::Content) return {};
    const auto content = bytes.first(static_cast<std::size_t>(std::min<std::uint64_t>(_left, bytes.size())));
    bytes = bytes.subspan(content.size());
    _left -= content.size();
    if (_left == 0) _place = Place::ContentEnd;
    return content;
}

// Returns the state after `byte`. Accepts lines that end in a bare line feed, and blanks after a chunk size.
ChunkedBody::Place ChunkedBody::placeBehind(unsigned char byte) noexcept {
    switch (_place) {
    case Place::Size:
        _left = 0;
        if (hexValue(byte) < 0) return Place::Broken;
        [[fallthrough]];
    case Place::SizeDigits:
        if (const int digit = hexValue(byte); digit >= 0) {
            _left = _left * 16 + static_cast<unsigned>(digit);
            return _left < LargestChunk / 16 ? Place::SizeDigits : Place::Broken;
        }
        if (byte != ';' && byte != ' ' && byte != '\t' && byte != '\r' && byte != '\n') return Place::Broken;
        [[fallthrough]];
    case Place::Extension:
        if (byte != '\n') return Place::Extension;
        return _left > 0 ? Place::Content : Place::Trailer;
    case Place::ContentEnd:
        if (byte == '\r') return Place::ContentEnd;
        return byte == '\n' ? Place::Size : Place::Broken;
    case Place::Trailer:
        if (byte == '\r') return Place::TrailerLineEnd;
        return byte == '\n' ? Place::End : Place::TrailerLine;
    case Place::TrailerLineEnd:
        return byte == '\n' ? Place::End : Place::TrailerLine;
    case Place::TrailerLine:
        return byte == '\n' ? Place::Trailer : Place::TrailerLine;
    case Place::Content:
    case Place::End:
    case Place::Broken:
        break;
    }
    return _place;
}

} // namespace platform
