// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Random numbers from the system's default source. Any thread.
#pragma once

#include <cstdint>
#include <span>

namespace platform {

/// Fills `bytes` from the kernel's generator.
void randomBytes(std::span<unsigned char> bytes);

/// Draws an integer uniformly from the closed range [low, high]; an empty range is fatal.
[[nodiscard]] std::int64_t randomInteger(std::int64_t low, std::int64_t high);

} // namespace platform
