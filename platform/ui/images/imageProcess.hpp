// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decodes a picture in a separate process (images/main.cpp). The process reads the picture from its standard
// input and writes a PictureHeader and the pixels to its standard output, a file in memory. It limits its own
// resources; the program kills it when it is done or the deadline has passed, and validates everything that
// it has written. Any thread.
#pragma once

#include "platform/ui/GObjectRef.hpp"

#include <cstddef>
#include <cstdint>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <span>

namespace platform {

/// The header at the start of the file. The process writes it last, after the pixels.
struct PictureHeader {
    static constexpr std::uint64_t Complete = 0x50494354'55524531; // "PICTURE1"
    std::uint64_t state;                                           // any value but Complete: not valid
    std::int64_t width;
    std::int64_t height;
    std::int64_t stride;   // bytes from one row to the next
    std::int64_t channels; // bytes per pixel: 3 (red, green, blue) or 4 (with alpha)
};

/// The offset of the pixels in the file.
inline constexpr std::size_t PicturePixelsAt = 4096;

/// Decodes `data`, a picture in the format that gdk-pixbuf calls `format`. Returns null if the picture is
/// damaged, has more than `mostPixels` pixels, or needs more memory or time than the process may use. Blocks
/// for at most two seconds on the main thread and ten on others.
[[nodiscard]] GObjectRef<GdkPixbuf> decodeInProcess(const char* format, std::span<const std::byte> data,
                                                    std::int64_t mostPixels);

} // namespace platform
