// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Creates the errors of failed file operations. Any thread.
#pragma once

#include "platform/foundation/Error.hpp"

#include <string>
#include <string_view>

namespace platform::detail {

/// Returns the last component of `path` in apostrophes.
[[nodiscard]] std::string quotedName(std::string_view path);

/// Creates the error of a failed operation on the item at `path`. With "removed" as the participle, the
/// sentence is "The file 'x' couldn't be removed (Permission denied)."
[[nodiscard]] Error itemError(int errorNumber, std::string_view path, std::string_view participle);
[[nodiscard]] Error attributesError(int errorNumber, std::string_view path);
/// Creates the error for a directory whose names could not all be read. The sentence contains the whole path.
[[nodiscard]] Error readingError(int errorNumber, std::string_view path);

} // namespace platform::detail
