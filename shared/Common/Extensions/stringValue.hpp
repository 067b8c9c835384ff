// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Converts four-character codes to text. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace tonewright {

/// Returns the four bytes of `code`, the most significant first, decoded as Mac OS Roman: "aumf" for
/// 0x61756D66. The result always has four characters, which may be control characters or NUL.
[[nodiscard]] std::string stringValue(std::uint32_t code);

} // namespace tonewright
