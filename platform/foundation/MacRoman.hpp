// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decodes text in the Mac OS Roman character set. Any thread.
// Source of the table: Unicode Consortium, VENDORS/APPLE/ROMAN.TXT (0xDB is the euro sign, 0xF0 is U+F8FF).
#pragma once

#include <optional>
#include <span>
#include <string>

namespace platform {

/// Returns Mac OS Roman bytes as UTF-8. Always returns a value, because every byte has a character.
[[nodiscard]] std::optional<std::string> decodeMacRoman(std::span<const unsigned char> bytes);

} // namespace platform
