// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the bytes of a picture tell before any decoder sees them: their format, whether the file is truncated,
// and whether decoding costs more than its pixels. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Returns the decoding library's name for the format of `data`, or null for an unknown one.
[[nodiscard]] const char* imageFormatOf(std::string_view data);

struct ImageStructure {
    /// False for a file that is known to be truncated. The decoders of PNG, JPEG and BMP do not report it.
    bool isWhole = true;
    /// True for a plain bitmap: decoded in one pass over the file, at a cost bounded by its pixels.
    bool isPlain = false;
};

/// Returns the structure of `data`, which has the format with that name.
[[nodiscard]] ImageStructure imageStructureOf(std::string_view format, std::string_view data);

/// Returns the largest picture of an icon file: a PNG, or an icon file with that picture alone. None if a
/// picture of the file is missing or truncated.
[[nodiscard]] std::optional<std::string> largestPictureOfIcon(std::string_view icon);

} // namespace platform
