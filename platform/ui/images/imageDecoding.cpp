// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/images/imageDecoding.hpp"

#include "platform/ui/images/PixbufDecoder.hpp"
#include "platform/ui/images/imageProcess.hpp"
#include "platform/ui/images/imageStructure.hpp"

#include <algorithm>
#include <string_view>

namespace platform {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t PieceSize = 65536; // bytes; a refusal takes effect after a whole piece

GObjectRef<GdkPixbuf> decodeHere(const char* format, std::span<const std::byte> data,
                                 std::int64_t mostPixels) {
    PixbufDecoder decoder(format, mostPixels);
    while (!data.empty()) {
        const auto piece = data.first(std::min(PieceSize, data.size()));
        if (!decoder.append(piece)) return {};
        data = data.subspan(piece.size());
    }
    return decoder.finish();
}

} // namespace

GObjectRef<GdkPixbuf> decodeImage(std::span<const std::byte> data, std::int64_t mostPixels) {
    const std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
    const char* format = imageFormatOf(text);
    if (format == nullptr) return {};
    if (format == "ico"sv) {
        const auto picture = largestPictureOfIcon(text);
        if (!picture) return {};
        const auto bytes = std::as_bytes(std::span(*picture));
        const bool isIcon = picture->starts_with(text.substr(0, 4)); // otherwise a PNG
        return isIcon ? decodeInProcess(format, bytes, mostPixels) : decodeImage(bytes, mostPixels);
    }
    const ImageStructure structure = imageStructureOf(format, text);
    if (!structure.isWhole) return {};
    return structure.isPlain ? decodeHere(format, data, mostPixels)
                             : decodeInProcess(format, data, mostPixels);
}

} // namespace platform
