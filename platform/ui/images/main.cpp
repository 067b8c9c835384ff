// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The program for pictures, called with FORMAT MOST-PIXELS: decodes the picture on standard input into the
// file that is standard output, as platform/ui/images/imageProcess.hpp describes it. Only the program starts
// it. A malicious picture can do no harm here: the process has no files, no network and little time.
#include "platform/foundation/confinement.hpp"
#include "platform/ui/images/PixbufDecoder.hpp"
#include "platform/ui/images/imageProcess.hpp"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using platform::PictureHeader;
using platform::PixbufDecoder;

// Enough for the largest picture, a drawing library's copy of it, and the process itself.
constexpr std::uint64_t MostMemory = std::uint64_t{1} << 30U; // bytes

bool write(std::span<const std::byte> bytes, std::size_t at) {
    while (!bytes.empty()) {
        const ssize_t count = ::pwrite(STDOUT_FILENO, bytes.data(), bytes.size(), static_cast<off_t>(at));
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return false;
        bytes = bytes.subspan(static_cast<std::size_t>(count));
        at += static_cast<std::size_t>(count);
    }
    return true;
}

bool feed(PixbufDecoder& decoder) {
    std::array<std::byte, 65536> piece;
    while (true) {
        const ssize_t count = ::read(STDIN_FILENO, piece.data(), piece.size());
        if (count < 0 && errno == EINTR) continue;
        if (count <= 0) return count == 0;
        if (!decoder.append(std::span(piece).first(static_cast<std::size_t>(count)))) return false;
    }
}

bool writePicture(GdkPixbuf* pixels) {
    const PictureHeader header = {.state = PictureHeader::Complete,
                                  .width = gdk_pixbuf_get_width(pixels),
                                  .height = gdk_pixbuf_get_height(pixels),
                                  .stride = gdk_pixbuf_get_rowstride(pixels),
                                  .channels = gdk_pixbuf_get_n_channels(pixels)};
    const std::span memory(gdk_pixbuf_read_pixels(pixels), gdk_pixbuf_get_byte_length(pixels));
    return write(std::as_bytes(memory), platform::PicturePixelsAt) &&
           write(std::as_bytes(std::span(&header, 1)), 0);
}

// The directories of fonts and their lists, for the text of vector images, and of libraries that a decoder
// opens late.
std::vector<std::string> readablePlaces() {
    std::vector<std::string> places = {
        "/usr", "/lib", "/lib64", "/etc/fonts", "/nix/store", "/gnu/store", "/var/cache/fontconfig"};
    places.push_back(std::string(g_get_user_data_dir()) + "/fonts");
    places.push_back(std::string(g_get_user_cache_dir()) + "/fontconfig");
    return places;
}

} // namespace

int main(int argc, char** argv) {
    using namespace platform;
    if (argc != 3) return EXIT_FAILURE;
    const std::int64_t mostPixels = std::strtoll(argv[2], nullptr, 10);
    constexpr std::int64_t BytesOfPixel = 4; // enough for padded rows of three bytes per pixel, too
    if (!endWithStarter() ||
        !limitResources(
            {.processorSeconds = 2,
             .memoryBytes = MostMemory,
             .fileBytes = platform::PicturePixelsAt + static_cast<std::uint64_t>(mostPixels * BytesOfPixel),
             .descriptors = 64})) {
        return EXIT_FAILURE;
    }
    PixbufDecoder decoder(argv[1], mostPixels); // opens the decoder's own library
    if (!confineTo({.readable = readablePlaces(), .writable = {}, .devices = {}})) return EXIT_FAILURE;
    if (!feed(decoder)) return EXIT_FAILURE;
    const auto pixels = decoder.finish();
    // Skips the libraries' exit handlers, which have nothing to clean up.
    std::_Exit(pixels && writePicture(pixels.get()) ? EXIT_SUCCESS : EXIT_FAILURE);
}
