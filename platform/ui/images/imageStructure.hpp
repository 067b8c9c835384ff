// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the bytes of a picture tell before any decoder sees them: their format, whether the file was cut
// short, and whether decoding costs more than its pixels. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Returns the decoding library's name for the format of `data`, or null for none that is known here.
[[nodiscard]] const char* imageFormatOf(std::string_view data);

struct ImageStructure {
    /// False for a file that is known to be cut short. The decoders of PNG, JPEG and BMP do not tell.
    bool isWhole = true;
    /// True for a plain bitmap: one pass over the file decodes it, at a cost that its pixels bound.
    bool isPlain = false;
};

/// Returns the structure of `data`, which has the format of that name.
[[nodiscard]] ImageStructure imageStructureOf(std::string_view format, std::string_view data);

/// Returns the largest picture of an icon file: a PNG, or an icon file with that picture alone. None when a
/// picture of the file is missing or cut short.
[[nodiscard]] std::optional<std::string> largestPictureOfIcon(std::string_view icon);

} // namespace platform
