// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decoding of pictures within limits: plain bitmaps in the program, everything else in a process of its own.
// Any thread.
#pragma once

#include "platform/ui/GObjectRef.hpp"

#include <cstddef>
#include <cstdint>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <span>

namespace platform {

/// Returns the picture in `data`, the right way up; null if it is not of a known kind, is truncated or
/// visibly damaged, has more than `mostPixels`, or takes its decoder too long. Blocks for as long as the
/// pixels of a plain bitmap take, otherwise at most two seconds on the main thread and ten on others.
[[nodiscard]] GObjectRef<GdkPixbuf> decodeImage(std::span<const std::byte> data, std::int64_t mostPixels);

} // namespace platform
