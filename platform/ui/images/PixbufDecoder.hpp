// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The toolkit's decoder, fed piece by piece. It runs in the program for plain bitmaps and in a process of its
// own for everything else. Used from one thread at a time.
#pragma once

#include "platform/ui/GObjectRef.hpp"

#include <cstddef>
#include <cstdint>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <span>

namespace platform {

class PixbufDecoder {
  public:
    /// Opens the decoder of the format with this name in the library. A picture of more than `mostPixels` is
    /// refused when its header has been read, before anything is allocated for it.
    PixbufDecoder(const char* format, std::int64_t mostPixels);
    ~PixbufDecoder();
    PixbufDecoder(const PixbufDecoder&) = delete;
    PixbufDecoder& operator=(const PixbufDecoder&) = delete;

    /// Appends the next piece; false if the picture is damaged or refused, or this system has no decoder for
    /// it. A refusal takes effect after the piece, so pieces should be small.
    [[nodiscard]] bool append(std::span<const std::byte> piece);
    /// Returns the picture, the right way up; null if it is not valid. Call once, after the last piece.
    [[nodiscard]] GObjectRef<GdkPixbuf> finish();

  private:
    static void onSize(GdkPixbufLoader* loader, int width, int height, gpointer data);
    bool close();

    GObjectRef<GdkPixbufLoader> _loader;
    std::int64_t _mostPixels;
    bool _isRefused = false;
    bool _isOpen = false;
};

} // namespace platform
