// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The sentences of failed file operations, each on one line whatever the names contain. Any thread.
#pragma once

#include "platform/foundation/Error.hpp"

#include <string>
#include <string_view>

namespace platform::detail {

/// Returns the last component of `path` in apostrophes.
[[nodiscard]] std::string quotedName(std::string_view path);

/// Creates the error of an operation on the item at `path`, "The file 'x' couldn't be removed (Permission
/// denied).", from an error number and the operation's word, "removed".
[[nodiscard]] Error itemError(int errorNumber, std::string_view path, std::string_view participle);
[[nodiscard]] Error attributesError(int errorNumber, std::string_view path);
/// Creates the error of a directory, given by its whole path, whose names could not all be read.
[[nodiscard]] Error readingError(int errorNumber, std::string_view path);

} // namespace platform::detail
