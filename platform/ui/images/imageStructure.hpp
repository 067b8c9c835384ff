// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Examines the bytes of a picture before they are decoded: their format, whether the file is truncated, and
// whether the cost of decoding is bounded by the number of pixels. Any thread.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace platform {

/// Returns gdk-pixbuf's name for the format of `data`, or null if the format is unknown.
[[nodiscard]] const char* imageFormatOf(std::string_view data);

struct ImageStructure {
    /// False for a file that is known to be truncated. The decoders for PNG, JPEG and BMP do not report that.
    bool isWhole = true;
    /// True for a plain bitmap: decoding is one pass over the file, and the number of pixels bounds its cost.
    bool isPlain = false;
};

/// Returns the structure of `data`, whose format is `format`.
[[nodiscard]] ImageStructure imageStructureOf(std::string_view format, std::string_view data);

/// Returns the largest picture of an icon file, as a PNG or as an icon file with only that picture. Returns
/// no value if the file has no picture or one of its pictures is truncated.
[[nodiscard]] std::optional<std::string> largestPictureOfIcon(std::string_view icon);

} // namespace platform
