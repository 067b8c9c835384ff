// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What a compressed picture may ask of its decoder besides its size, seen from the bytes alone. Any thread.
#pragma once

#include <cstdint>
#include <string_view>

namespace platform {

/// Tell whether a JPEG has more scans than any camera or program writes: each costs as much as the whole
/// picture.
[[nodiscard]] bool hasTooManyScans(std::string_view jpeg);

/// Tell whether a frame of a GIF has more than `mostPixels`. Frames may be larger than the picture, and the
/// decoder unpacks them whole.
[[nodiscard]] bool hasLargerFrame(std::string_view gif, std::int64_t mostPixels);

} // namespace platform
