// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The formulas of the curves as plain functions, written independently of the animator.
#pragma once

#include <cstdint>

namespace bench {

using Plain = float (*)(std::int64_t, float, float, std::int64_t);

inline constexpr int PlainCount = 41;
extern const Plain PlainFormulas[PlainCount]; // in the order of EnumEasing

} // namespace bench
