// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Pictures for tests: real ones in every format that GdkPixbuf writes, and bare headers.
#pragma once

#include <cstdint>
#include <cstring>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <string>
#include <string_view>

namespace tonewright::test {

/// A picture filled with one colour.
struct Picture {
    static constexpr int Red = 200, Green = 100, Blue = 50;
    int width, height;
};

/// Returns pixels encoded in a format that GdkPixbuf writes.
inline std::string encoded(GdkPixbuf* pixels, const char* format) {
    char* bytes = nullptr;
    gsize size = 0;
    gdk_pixbuf_save_to_buffer(pixels, &bytes, &size, format, nullptr, nullptr);
    std::string data(bytes, size);
    g_free(bytes);
    return data;
}

/// Returns the picture encoded in such a format.
inline std::string encoded(const Picture& picture, const char* format) {
    GdkPixbuf* pixels = gdk_pixbuf_new(GDK_COLORSPACE_RGB, FALSE, 8, picture.width, picture.height);
    gdk_pixbuf_fill(pixels, static_cast<guint32>(Picture::Red) << 24U | Picture::Green << 16U |
                                Picture::Blue << 8U | 0xFFU);
    std::string data = encoded(pixels, format);
    g_object_unref(pixels);
    return data;
}

/// Returns `value` as `count` bytes, least significant byte first.
inline std::string little(std::int64_t value, int count) {
    std::string bytes;
    for (int i = 0; i < count; ++i) bytes += static_cast<char>(value >> (8 * i));
    return bytes;
}

inline std::string big(std::int64_t value, int count) {
    const std::string bytes = little(value, count);
    return {bytes.rbegin(), bytes.rend()};
}

/// Pads `data` to 1 KiB.
inline std::string padded(std::string data) {
    data.resize(1024);
    return data;
}

/// Returns the checksum of a PNG chunk (RFC 2083, 15).
inline std::int64_t crc32(std::string_view bytes) {
    std::uint32_t check = 0xFFFFFFFFU;
    for (const char byte : bytes) {
        check ^= static_cast<unsigned char>(byte);
        for (int bit = 0; bit < 8; ++bit) check = check >> 1U ^ ((check & 1U) != 0 ? 0xEDB88320U : 0U);
    }
    return check ^ 0xFFFFFFFFU;
}

/// Returns a PNG (RFC 2083, 11.2) with all chunks, whose pixel data ends early.
inline std::string pngHeader(std::int64_t width, std::int64_t height) {
    const auto chunk = [](const std::string& typeAndData) {
        return big(static_cast<std::int64_t>(typeAndData.size()) - 4, 4) + typeAndData +
               big(crc32(typeAndData), 4);
    };
    return "\x89PNG\r\n\x1A\n" +
           chunk("IHDR" + big(width, 4) + big(height, 4) + std::string("\x08\x06\0\0\0", 5)) +
           chunk("IDAT" + std::string("\x78\x9C\xED\xC1\x01\x0D\0\0\0\xC2\xA0\xF7", 12)) + chunk("IEND");
}

/// Returns a sequential JPEG after changing the size in its frame header (ITU T.81, B.2.2). If its content
/// ends early, decoders fill the remainder with one colour.
inline std::string withSize(std::string jpeg, std::int64_t width, std::int64_t height) {
    const std::size_t frame = jpeg.find("\xFF\xC0");
    return jpeg.replace(frame + 5, 4, big(height, 2) + big(width, 2));
}

/// Returns a GIF whose screen and whose only frame have these sizes; its data fills the first pixels with one
/// colour.
inline std::string gif(std::int64_t width, std::int64_t height, std::int64_t frameWidth,
                       std::int64_t frameHeight) {
    return "GIF89a" + little(width, 2) + little(height, 2) + std::string("\x80\0\0\xFF\0\0\0\0\0", 9) + "," +
           std::string(4, '\0') + little(frameWidth, 2) + little(frameHeight, 2) + std::string("\0\x02", 2) +
           std::string("\x02\x44\x01\0", 4) + ";";
}

/// Returns a TIFF with one strip, which follows the directory.
inline std::string tiffHeader(std::int64_t width, std::int64_t height) {
    std::string entries;
    const std::pair<std::int64_t, std::int64_t> fields[] = {
        {256, width},  {257, height},        {258, 8}, {259, 1}, {262, 1}, {273, 200}, {277, 1},
        {278, height}, {279, width * height}};
    for (const auto& [tag, value] : fields) {
        entries += little(tag, 2) + little(4, 2) + little(1, 4) + little(value, 4);
    }
    return std::string("II*\0", 4) + little(8, 4) + little(9, 2) + entries + little(0, 4);
}

/// Returns a JPEG with the orientation of the camera (Exif 2.3, tag 0x0112).
inline std::string withOrientation(const std::string& jpeg, std::int64_t orientation) {
    const std::string exif = std::string("Exif\0\0II*\0", 10) + little(8, 4) + little(1, 2) +
                             little(0x112, 2) + little(3, 2) + little(1, 4) + little(orientation, 4) +
                             little(0, 4);
    return jpeg.substr(0, 2) + "\xFF\xE1" + big(static_cast<std::int64_t>(exif.size()) + 2, 2) + exif +
           jpeg.substr(2);
}

/// Returns an icon with one picture, which may be a PNG. Each side is at most 256 pixels.
inline std::string icon(const std::string& picture, int width, int height) {
    return std::string("\0\0\1\0\1\0", 6) + little(width % 256, 1) + little(height % 256, 1) +
           std::string("\0\0\1\0\x20\0", 6) + little(static_cast<std::int64_t>(picture.size()), 4) +
           little(22, 4) + picture;
}

/// Returns a run-length encoded BMP (BI_RLE8) in one colour, with the data of only 4 x 2 pixels.
inline std::string packedBmp(std::int64_t width, std::int64_t height) {
    const std::string runs("\4\0\0\0\4\0\0\1", 8);
    const std::int64_t begin = 14 + 40 + 4;
    return "BM" + little(begin + 8, 4) + little(0, 4) + little(begin, 4) + little(40, 4) + little(width, 4) +
           little(height, 4) + little(1, 2) + little(8, 2) + little(1, 4) + little(8, 4) + little(0, 8) +
           little(1, 4) + little(0, 4) + little(0x0000FF00, 4) + runs;
}

/// Returns a vector image of a few hundred bytes, whose filter adds `layers` layers of noise.
inline std::string vectorNoise(int side, int layers) {
    const std::string length = std::to_string(side);
    return "<svg xmlns='http://www.w3.org/2000/svg' width='" + length + "' height='" + length +
           "'><filter id='f'><feTurbulence baseFrequency='.1' numOctaves='" + std::to_string(layers) +
           "'/></filter><rect width='100%' height='100%' filter='url(#f)'/></svg>";
}

} // namespace tonewright::test
