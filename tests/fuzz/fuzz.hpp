// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdlib>
#include <string_view>

/// Processes one input; aborts if an invariant is violated.
void fuzzOne(std::string_view input);

inline void require(bool holds) {
    if (!holds) std::abort();
}
