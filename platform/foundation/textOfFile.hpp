// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Whole files as text. Any thread; blocks while it reads.
#pragma once

#include "platform/foundation/Result.hpp"

#include <string>

namespace platform {

/// Reads the file at `path` as UTF-8 text, byte for byte. Returns an error if it is not a regular file,
/// cannot be read, or is not UTF-8 (RFC 3629: no surrogates, nothing overlong); a pipe is not waited for.
[[nodiscard]] Result<std::string> stringWithContentsOfFile(const std::string& path);

} // namespace platform
