// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Four-character codes as text. Any thread.
#pragma once

#include <cstdint>
#include <string>

namespace tonewright {

/// Returns the four bytes of `code`, the most significant first, decoded as Mac OS Roman: always four
/// characters, NUL and other controls included. 0x61756D66 gives "aumf".
[[nodiscard]] std::string stringValue(std::uint32_t code);

} // namespace tonewright
