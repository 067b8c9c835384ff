// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/images/imageStructure.hpp"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <tuple>

namespace platform {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t HeadSize = 1024; // bytes; the root element of an SVG must start within them

constexpr std::string_view PNGBeginning = "\x89PNG\r\n\x1A\n";

// The formats that are common on servers, under the names that gdk-pixbuf uses. Its own format detection
// would also accept rare formats, whose decoders are rarely tested.
struct Format {
    const char* name;
    std::string_view beginning;
    std::string_view sign = {};
    std::size_t signPosition = 0;
};
constexpr std::array<Format, 9> Formats = {{
    {.name = "png", .beginning = PNGBeginning},
    {.name = "jpeg", .beginning = "\xFF\xD8\xFF"sv},
    {.name = "gif", .beginning = "GIF8"sv},
    {.name = "webp", .beginning = "RIFF"sv, .sign = "WEBP"sv, .signPosition = 8},
    {.name = "bmp", .beginning = "BM"sv},
    {.name = "tiff", .beginning = "II*\0"sv},
    {.name = "tiff", .beginning = "MM\0*"sv},
    {.name = "ico", .beginning = "\0\0\1\0"sv},
    {.name = "ico", .beginning = "\0\0\2\0"sv},
}};

// An SVG is text. White space, an XML declaration and comments may precede its root element.
bool isVectorImage(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    const auto first = text.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && text[first] == '<' &&
           text.substr(0, HeadSize).find("<svg") != std::string_view::npos;
}

// Read unsigned numbers at any position. Bytes beyond the end of `data` are read as 0.
std::int64_t byteAt(std::string_view data, std::size_t at) {
    return at < data.size() ? static_cast<unsigned char>(data[at]) : 0;
}
std::int64_t little16(std::string_view data, std::size_t at) {
    return byteAt(data, at) | byteAt(data, at + 1) << 8U;
}
std::int64_t little32(std::string_view data, std::size_t at) {
    return little16(data, at) | little16(data, at + 2) << 16U;
}
std::int64_t big16(std::string_view data, std::size_t at) {
    return byteAt(data, at) << 8U | byteAt(data, at + 1);
}
std::int64_t big32(std::string_view data, std::size_t at) {
    return big16(data, at) << 16U | big16(data, at + 2);
}

// A PNG (RFC 2083) consists of chunks up to IEND. It is not plain if it has large compressed texts or
// profiles, which can expand a thousandfold, or if it is interlaced, because decoding then takes seven
// passes.
ImageStructure structureOfPNG(std::string_view data) {
    constexpr std::int64_t MostPackedBytes = 65536;
    constexpr std::size_t InterlacePosition = 28;
    bool isPlain = byteAt(data, InterlacePosition) == 0;
    std::int64_t packed = 0;
    constexpr std::size_t FrameSize = 12; // length, type and check of a chunk
    for (std::size_t at = 8; at + FrameSize <= data.size();) {
        const std::int64_t length = big32(data, at);
        const std::string_view type = data.substr(at + 4, 4);
        if (length > static_cast<std::int64_t>(data.size() - at - FrameSize)) break;
        if (type == "IEND") return {true, isPlain && packed <= MostPackedBytes};
        if (type == "zTXt" || type == "iTXt" || type == "iCCP") packed += length;
        at += FrameSize + static_cast<std::size_t>(length);
    }
    return {false, false};
}

// A JPEG (ITU T.81, annex B) consists of segments up to an end marker. It is plain only with a single scan,
// because decoding each further scan takes as long as the whole picture.
ImageStructure structureOfJPEG(std::string_view data) {
    constexpr std::int64_t EndOfImage = 0xD9;
    constexpr std::int64_t StartOfScan = 0xDA;
    bool isSequential = false;
    int scans = 0;
    std::size_t at = 2;
    while (true) {
        // Find the next marker. Within a scan, FF followed by 0 is a data byte, and D0 to D7 are restart
        // markers.
        at = data.find('\xFF', at);
        if (at == std::string_view::npos || at + 1 >= data.size()) return {false, false};
        const std::int64_t marker = byteAt(data, ++at);
        if (marker == 0xFF) continue; // padding
        ++at;
        if (marker == EndOfImage) return {true, isSequential && scans == 1};
        if (marker <= 0x01 || (marker >= 0xD0 && marker <= 0xD8)) continue;
        if (marker == 0xC0 || marker == 0xC1) isSequential = true; // sequential frames with Huffman coding
        if (marker == StartOfScan) ++scans;
        at += static_cast<std::size_t>(big16(data, at));
    }
}

// The header of a BMP states where the pixels start and how many bytes they occupy.
bool isWholeBMP(std::string_view data) {
    const std::int64_t begin = little32(data, 10);
    const std::int64_t headerSize = little32(data, 14);
    const auto available = static_cast<std::int64_t>(data.size()) - begin;
    constexpr std::int64_t OldHeaderSize = 12;
    const bool isOld = headerSize == OldHeaderSize;
    const std::int64_t compression = isOld ? 0 : little32(data, 30);
    if (compression == 1 || compression == 2) { // run-length encoded: only the header states the size
        const std::int64_t size = little32(data, 34);
        return size > 0 && size <= available;
    }
    const std::int64_t width = isOld ? little16(data, 18) : little32(data, 18);
    const std::int64_t height =
        isOld ? little16(data, 20) : std::abs(std::int64_t{static_cast<std::int32_t>(little32(data, 22))});
    const std::int64_t bits = little16(data, isOld ? 24 : 28);
    const std::int64_t rowBytes = (width * bits + 31) / 32 * 4;
    return available > 0 && rowBytes > 0 && height <= available / rowBytes;
}

bool isWholeRIFF(std::string_view data) {
    return little32(data, 4) + 8 <= static_cast<std::int64_t>(data.size());
}

} // namespace

const char* imageFormatOf(std::string_view data) {
    for (const Format& format : Formats) {
        if (data.starts_with(format.beginning) && data.size() >= format.signPosition &&
            data.substr(format.signPosition).starts_with(format.sign)) {
            return format.name;
        }
    }
    return isVectorImage(data) ? "svg" : nullptr;
}

ImageStructure imageStructureOf(std::string_view format, std::string_view data) {
    if (format == "png") return structureOfPNG(data);
    if (format == "jpeg") return structureOfJPEG(data);
    if (format == "bmp") return {isWholeBMP(data), true};
    if (format == "webp") return {isWholeRIFF(data), false};
    return {}; // the decoders of the other formats refuse truncated files
}

std::optional<std::string> largestPictureOfIcon(std::string_view icon) {
    constexpr std::size_t HeadLength = 6;
    constexpr std::size_t EntryLength = 16;
    const auto side = [&](std::size_t at) { return byteAt(icon, at) == 0 ? 256 : byteAt(icon, at); };
    const auto count = static_cast<std::size_t>(little16(icon, 4));
    std::string_view entry;
    std::string_view picture;
    std::tuple<std::int64_t, std::int64_t> best{0, 0}; // number of pixels, then bits per pixel
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t at = HeadLength + i * EntryLength;
        const std::int64_t size = little32(icon, at + 8);
        const std::int64_t begin = little32(icon, at + 12);
        if (at + EntryLength > icon.size() || size == 0 ||
            begin + size > static_cast<std::int64_t>(icon.size())) {
            return std::nullopt;
        }
        const std::tuple rank(side(at) * side(at + 1), little16(icon, at + 6));
        if (rank <= best) continue;
        best = rank;
        entry = icon.substr(at, EntryLength);
        picture = icon.substr(static_cast<std::size_t>(begin), static_cast<std::size_t>(size));
    }
    if (picture.empty()) return std::nullopt;
    if (picture.starts_with(PNGBeginning)) return std::string(picture);
    // gdk-pixbuf's decoder would decode all pictures of the file, and refuses a file that contains a PNG.
    std::string alone(icon.substr(0, 4));
    alone.append("\1\0"sv).append(entry.substr(0, 12)).append("\x16\0\0\0"sv).append(picture);
    return alone;
}

} // namespace platform
