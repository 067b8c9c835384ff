// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "SeamError.hpp"

#include <cmath>
#include <cstddef>

namespace tonewright::loops {

SeamError seamError(const std::vector<std::vector<float>>& recipe,
                    const std::vector<std::vector<float>>& decoded) {
    constexpr std::size_t Around = 2000;
    double seam = 0;
    double rest = 0;
    double signal = 0;
    std::size_t length = 0;
    for (std::size_t channel = 0; channel < recipe.size(); ++channel) {
        length = recipe[channel].size();
        for (std::size_t frame = 0; frame < length; ++frame) {
            const double wanted = static_cast<double>(recipe[channel][frame]);
            const double error = static_cast<double>(decoded[channel][frame]) - wanted;
            (frame < Around || frame + Around >= length ? seam : rest) += error * error;
            signal += wanted * wanted;
        }
    }
    const double sides = static_cast<double>(recipe.size());
    const auto decibels = [](double power) { return 10.0 * std::log10(power + 1e-20); };
    return {decibels(seam / (sides * 2.0 * Around)),
            decibels(rest / (sides * static_cast<double>(length - 2 * Around))),
            decibels(signal) - decibels(seam + rest)};
}

} // namespace tonewright::loops
