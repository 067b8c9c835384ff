// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decoding of a picture in a process of its own, images/main.cpp. It receives the picture
// on its standard input and writes a PictureHeader and the pixels to its standard output, a file in memory.
// It sets its own limits; the program gives it a deadline, ends it in any case and trusts nothing that it
// wrote. Any thread.
#pragma once

#include "platform/ui/GObjectRef.hpp"

#include <cstddef>
#include <cstdint>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <span>

namespace platform {

/// What the process writes at the start of the file, last of all.
struct PictureHeader {
    static constexpr std::uint64_t Complete = 0x50494354'55524531; // "PICTURE1"
    std::uint64_t state;                                           // Complete, or the file is not valid
    std::int64_t width;
    std::int64_t height;
    std::int64_t stride;   // bytes from row to row
    std::int64_t channels; // bytes of a pixel: red, green, blue and, if it has one, alpha
};

/// The offset of the pixels in the file.
inline constexpr std::size_t PicturePixelsAt = 4096;

/// Returns the picture in `data`, in the format with that name in the decoding library; null if it is
/// damaged, has more than `mostPixels`, or needs more memory or time than the process has. Blocks: at most
/// two seconds on the main thread, ten on others.
[[nodiscard]] GObjectRef<GdkPixbuf> decodeInProcess(const char* format, std::span<const std::byte> data,
                                                    std::int64_t mostPixels);

} // namespace platform
