// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/lanes.hpp"

#include "gallery/palette.hpp"

#include <algorithm>
#include <array>

namespace tonewright {
namespace {

using platform::CGRect;
using platform::Point;

constexpr double Ends = 0.2; // of the width, on each side, for what overshoots
constexpr double DotRadius = 5;
constexpr double Padding = 8; // above the first lane and below the last

} // namespace

double laneX(const CGRect& bounds, double value) {
    const double x = bounds.width * (Ends + value * (1 - 2 * Ends));
    return std::clamp(x, DotRadius, std::max(DotRadius, bounds.width - DotRadius));
}

double laneY(const CGRect& bounds, std::size_t lanes, std::size_t lane) {
    const double height = std::max(0.0, bounds.height - 2 * Padding);
    return Padding + height * (static_cast<double>(lane) + 0.5) / static_cast<double>(lanes);
}

void drawLanes(platform::Canvas& canvas, std::size_t lanes) {
    const CGRect bounds{0, 0, canvas.width(), canvas.height()};
    const platform::Color faint = canvas.textColor().faded(palette::Faint);
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        const double y = laneY(bounds, lanes, lane);
        const std::array line = {Point{laneX(bounds, 0), y}, Point{laneX(bounds, 1), y}};
        canvas.strokeLine(line, 1, faint);
    }
    for (const double value : {0.0, 1.0}) {
        const double x = laneX(bounds, value);
        const std::array line = {Point{x, Padding}, Point{x, bounds.height - Padding}};
        canvas.strokeLine(line, 1, faint);
    }
}

platform::Mark dotInLane(const CGRect& bounds, std::size_t lanes, std::size_t lane, double value,
                         const platform::Color& color) {
    return dotAt({laneX(bounds, value), laneY(bounds, lanes, lane)}, DotRadius, color);
}

} // namespace tonewright
