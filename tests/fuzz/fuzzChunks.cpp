// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decodes chunked bodies of arbitrary bytes, compressed or not. The result must not depend on how the bytes
// are split into pieces.
#include "tests/fuzz/fuzz.hpp"

#include "platform/network/detail/ChunkedBody.hpp"
#include "platform/network/detail/GzipContent.hpp"

#include <string>

namespace {

struct Result {
    std::string content, unpacked;
    bool isWhole = false, isUnpackedWhole = false;
    friend bool operator==(const Result&, const Result&) = default;
};

Result takeApart(std::span<const std::byte> input, std::size_t pieceLength) {
    Result result;
    platform::ChunkedBody body;
    platform::GzipContent packed;
    bool isDamaged = false;
    const auto note = [](std::string& text, std::span<const std::byte> bytes) {
        text.append(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        return std::nullopt;
    };
    while (!input.empty()) {
        auto piece = input.first(std::min(pieceLength, input.size()));
        input = input.subspan(piece.size());
        for (auto content = body.next(piece); !content.empty(); content = body.next(piece)) {
            note(result.content, content);
            isDamaged =
                isDamaged || packed.unpack(content, [&](auto bytes) { return note(result.unpacked, bytes); });
        }
        if (body.isWhole() || body.isBroken()) break;
        require(piece.empty()); // all input was consumed
    }
    result.isWhole = body.isWhole();
    result.isUnpackedWhole = !isDamaged && packed.isWhole();
    if (isDamaged) result.unpacked.clear(); // the content before the damage depends on the pieces
    return result;
}

} // namespace

void fuzzOne(std::string_view input) {
    const auto bytes = std::as_bytes(std::span(input));
    const Result whole = takeApart(bytes, std::max<std::size_t>(1, bytes.size()));
    require(takeApart(bytes, 1) == whole && takeApart(bytes, 7) == whole);
}
