// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/detail/imageLimits.hpp"

#include <cstddef>

namespace platform {
namespace {

using namespace std::string_view_literals;

constexpr int MostScans = 100;

// Reads a GIF (version 89a, CompuServe 1990) from block to block; behind the end there are zeros.
class GifReader {
  public:
    explicit GifReader(std::string_view bytes)
        : _bytes(bytes) {}

    [[nodiscard]] bool isAtEnd() const { return _position >= _bytes.size(); }
    void skip(std::size_t count) { _position += count; }
    int byte() {
        const std::size_t at = _position++;
        return at < _bytes.size() ? static_cast<unsigned char>(_bytes[at]) : 0;
    }
    int number() {
        const int low = byte();
        return low + 256 * byte();
    }
    // Passes the table of colours that a byte of flags announces.
    void skipColours(int flags) {
        if ((flags & 0x80) != 0) skip(std::size_t{3} << static_cast<unsigned>((flags & 7) + 1));
    }
    void skipBlocks() {
        for (int length = byte(); length > 0; length = byte()) skip(static_cast<std::size_t>(length));
    }

  private:
    std::string_view _bytes;
    std::size_t _position = 0;
};

} // namespace

bool hasTooManyScans(std::string_view jpeg) {
    constexpr auto StartOfScan = "\xFF\xDA"sv; // cannot occur within a scan
    int scans = 0;
    for (auto at = jpeg.find(StartOfScan); at != std::string_view::npos && scans <= MostScans;
         at = jpeg.find(StartOfScan, at + StartOfScan.size()))
        ++scans;
    return scans > MostScans;
}

bool hasLargerFrame(std::string_view gif, std::int64_t mostPixels) {
    GifReader reader(gif);
    reader.skip(10); // signature and size of the screen
    const int screenFlags = reader.byte();
    reader.skip(2);
    reader.skipColours(screenFlags);
    while (!reader.isAtEnd()) {
        const int kind = reader.byte();
        if (kind == '!') { // an extension
            reader.skip(1);
        } else if (kind == ',') { // a frame
            reader.skip(4);       // its place
            const std::int64_t width = reader.number();
            if (width * reader.number() > mostPixels) return true;
            reader.skipColours(reader.byte());
            reader.skip(1); // code size
        } else {
            return false;
        }
        reader.skipBlocks();
    }
    return false;
}

} // namespace platform
