// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads whole files as text. Any thread; blocks while reading.
#pragma once

#include "platform/foundation/Result.hpp"

#include <string>

namespace platform {

/// Returns the contents of the file at `path`, which must be UTF-8 text (RFC 3629: no surrogates or overlong
/// forms). Returns an error if the file is not a regular one, cannot be read or is not UTF-8. Does not block
/// on a FIFO.
[[nodiscard]] Result<std::string> stringWithContentsOfFile(const std::string& path);

} // namespace platform
