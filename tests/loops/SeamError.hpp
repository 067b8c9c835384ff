// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How much worse a loop's coding is around its seam than elsewhere. For tests.
#pragma once

#include <span>
#include <vector>

namespace tonewright::loops {

struct SeamError {
    double seamDecibels = 0;  // power of decoded minus recipe in the 2,000 frames on either side of the seam
    double restDecibels = 0;  // the same in the rest of the loop
    double signalToNoise = 0; // decibels, over the whole loop

    [[nodiscard]] double excess() const { return seamDecibels - restDecibels; }
};

[[nodiscard]] SeamError seamError(const std::vector<std::vector<float>>& recipe,
                                  const std::vector<std::vector<float>>& decoded);

} // namespace tonewright::loops
