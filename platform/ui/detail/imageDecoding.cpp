// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/detail/imageDecoding.hpp"

#include "platform/ui/detail/imageLimits.hpp"

#include <algorithm>
#include <array>
#include <string_view>

namespace platform {
namespace {

using namespace std::string_view_literals;

constexpr std::size_t PieceSize = 65536; // bytes, after each of which a refusal takes effect
constexpr std::size_t HeadSize = 1024;   // bytes, within which the root of a vector image begins

// The library's own recognition would try every format that is installed, rare ones with rarely tested
// decoders too. These are the ones that people put on servers; the names are the library's.
struct Format {
    const char* name;
    std::string_view beginning;
    std::string_view sign = {};
    std::size_t signPosition = 0;
};
constexpr std::array<Format, 9> Formats = {{
    {"png", "\x89PNG\r\n\x1A\n"sv},
    {"jpeg", "\xFF\xD8\xFF"sv},
    {"gif", "GIF8"sv},
    {"webp", "RIFF"sv, "WEBP"sv, 8},
    {"bmp", "BM"sv},
    {"tiff", "II*\0"sv},
    {"tiff", "MM\0*"sv},
    {"ico", "\0\0\1\0"sv},
    {"ico", "\0\0\2\0"sv},
}};

// A vector image is text: its root element, behind white space, a declaration and comments.
bool isVectorImage(std::string_view text) {
    if (text.starts_with("\xEF\xBB\xBF")) text.remove_prefix(3);
    const auto first = text.find_first_not_of(" \t\r\n");
    return first != std::string_view::npos && text[first] == '<' &&
           text.substr(0, HeadSize).find("<svg") != std::string_view::npos;
}

const char* formatOf(std::string_view data) {
    for (const Format& format : Formats)
        if (data.starts_with(format.beginning) && data.size() >= format.signPosition &&
            data.substr(format.signPosition).starts_with(format.sign))
            return format.name;
    return isVectorImage(data) ? "svg" : nullptr;
}

// Hears the size when the header was read, before anything is allocated for the picture.
struct SizeCheck {
    std::int64_t mostPixels;
    bool isRefused = false;

    static void onSize(GdkPixbufLoader* loader, int width, int height, gpointer data) {
        auto* check = static_cast<SizeCheck*>(data);
        if (width > 0 && height > 0 && height <= check->mostPixels / width) return;
        check->isRefused = true;
        gdk_pixbuf_loader_set_size(loader, 0, 0); // the library's sign for "no further"
    }
};

bool feed(GdkPixbufLoader* loader, std::span<const std::byte> data, const SizeCheck& check) {
    while (!data.empty() && !check.isRefused) {
        const auto piece = data.first(std::min(PieceSize, data.size()));
        if (gdk_pixbuf_loader_write(loader, reinterpret_cast<const guchar*>(piece.data()), piece.size(),
                                    nullptr) == FALSE)
            return false;
        data = data.subspan(piece.size());
    }
    return !check.isRefused;
}

} // namespace

GObjectRef<GdkPixbuf> decodeImage(std::span<const std::byte> data, std::int64_t mostPixels) {
    const std::string_view text(reinterpret_cast<const char*>(data.data()), data.size());
    const char* format = formatOf(text);
    if (format == nullptr || (format == "jpeg"sv && hasTooManyScans(text)) ||
        (format == "gif"sv && hasLargerFrame(text, mostPixels)))
        return {};
    const auto loader = GObjectRef<GdkPixbufLoader>::adopt(gdk_pixbuf_loader_new_with_type(format, nullptr));
    if (!loader) return {}; // this system has no decoder for it
    SizeCheck check{mostPixels};
    g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(&SizeCheck::onSize), &check);
    const bool isFed = feed(loader.get(), data, check);
    // Closing in any case: the library demands it. Some decoders do all their work here.
    const bool isClosed = gdk_pixbuf_loader_close(loader.get(), nullptr) != FALSE;
    if (!isFed || !isClosed || check.isRefused) return {};
    GdkPixbuf* pixels = gdk_pixbuf_loader_get_pixbuf(loader.get());
    return GObjectRef<GdkPixbuf>::adopt(pixels == nullptr ? nullptr
                                                          : gdk_pixbuf_apply_embedded_orientation(pixels));
}

} // namespace platform
