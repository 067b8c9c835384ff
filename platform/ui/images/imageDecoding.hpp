// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decodes pictures within limits: plain bitmaps in the program, all others in a separate process. Any thread.
#pragma once

#include "platform/ui/GObjectRef.hpp"

#include <cstddef>
#include <cstdint>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <span>

namespace platform {

/// Returns the picture in `data` with its stored orientation applied. Returns null if its format is unknown,
/// if it is truncated or damaged, if it has more than `mostPixels` pixels, or if decoding takes too long.
/// Blocks: for a plain bitmap as long as decoding takes, otherwise at most two seconds on the main thread and
/// ten on others.
[[nodiscard]] GObjectRef<GdkPixbuf> decodeImage(std::span<const std::byte> data, std::int64_t mostPixels);

} // namespace platform
