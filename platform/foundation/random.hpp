// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Random numbers from the system. Any thread.
#pragma once

#include <cstdint>
#include <span>

namespace platform {

/// Fills `bytes` with random bytes from the kernel.
void randomBytes(std::span<unsigned char> bytes);

/// Returns a uniformly distributed integer from the closed range [low, high]. An empty range is a fatal
/// error.
[[nodiscard]] std::int64_t randomInteger(std::int64_t low, std::int64_t high);

} // namespace platform
