// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decoding of pictures by the toolkit's library, within limits. Any thread.
#pragma once

#include "platform/ui/detail/GObjectRef.hpp"

#include <cstddef>
#include <cstdint>
#include <gdk-pixbuf/gdk-pixbuf.h>
#include <span>

namespace platform {

/// Decode `data`, the right way up; null when it is no picture of a known kind, is damaged, or has more than
/// `mostPixels`, which is known from the header alone.
[[nodiscard]] GObjectRef<GdkPixbuf> decodeImage(std::span<const std::byte> data, std::int64_t mostPixels);

} // namespace platform
