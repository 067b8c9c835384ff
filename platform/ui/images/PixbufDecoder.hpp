// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The decoder of gdk-pixbuf, fed piece by piece. Plain bitmaps are decoded in the program, all other pictures
// in a separate process. One thread at a time.
#pragma once

#include "platform/ui/GObjectRef.hpp"

#include <cstddef>
#include <cstdint>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <span>

namespace platform {

class PixbufDecoder {
  public:
    /// Opens the decoder for `format`, a name that gdk-pixbuf uses. A picture of more than `mostPixels`
    /// pixels is refused when its header has been read, before memory for it is allocated.
    PixbufDecoder(const char* format, std::int64_t mostPixels);
    ~PixbufDecoder();
    PixbufDecoder(const PixbufDecoder&) = delete;
    PixbufDecoder& operator=(const PixbufDecoder&) = delete;

    /// Appends the next piece. Returns false if the picture is damaged or refused, or if this system has no
    /// decoder for it. A refusal takes effect only after the whole piece, so pieces should be small.
    [[nodiscard]] bool append(std::span<const std::byte> piece);
    /// Returns the picture with its stored orientation applied, or null if it is not valid. Call once, after
    /// the last piece.
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
