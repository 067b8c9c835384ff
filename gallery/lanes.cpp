// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "gallery/lanes.hpp"

#include "gallery/palette.hpp"

#include <algorithm>
#include <array>
#include <utility>

namespace tonewright {
namespace {

using platform::CGRect;
using platform::Point;

constexpr double Ends = 0.2; // fraction of the width on each side, for curves that overshoot
constexpr double DotRadius = 5;
constexpr double CaptionHeight = 14; // below the lanes
constexpr double CaptionSize = 10;   // font size in points

double laneX(const CGRect& bounds, double value) {
    const double x = bounds.width * (Ends + value * (1 - 2 * Ends));
    return bounds.x + std::clamp(x, DotRadius, std::max(DotRadius, bounds.width - DotRadius));
}

double lanesHeight(const CGRect& bounds) {
    return std::max(0.0, bounds.height - LanePadding - CaptionHeight);
}

} // namespace

double laneHeight(const CGRect& bounds, std::size_t lanes) {
    return lanesHeight(bounds) / static_cast<double>(lanes);
}

double laneY(const CGRect& bounds, std::size_t lanes, std::size_t lane) {
    return bounds.y + LanePadding + laneHeight(bounds, lanes) * (static_cast<double>(lane) + 0.5);
}

void drawLanes(platform::Canvas& canvas, const CGRect& bounds, std::size_t lanes) {
    const platform::Color faint = canvas.textColor().faded(palette::Faint);
    for (std::size_t lane = 0; lane < lanes; ++lane) {
        const double y = laneY(bounds, lanes, lane);
        const std::array line = {Point{laneX(bounds, 0), y}, Point{laneX(bounds, 1), y}};
        canvas.strokeLine(line, 1, faint);
    }
    for (const double value : {0.0, 1.0}) {
        const double x = laneX(bounds, value);
        const double top = bounds.y + LanePadding;
        const std::array line = {Point{x, top}, Point{x, top + lanesHeight(bounds)}};
        canvas.strokeLine(line, 1, faint);
    }
    captionAxis(canvas, bounds, laneX(bounds, 0), laneX(bounds, 1), "0", "value", "1");
}

void captionAxis(platform::Canvas& canvas, const CGRect& bounds, double left, double right,
                 std::string_view first, std::string_view name, std::string_view last) {
    constexpr double Width = 60; // enough for each caption
    const std::array captions = {std::pair{first, left}, std::pair{name, (left + right) / 2},
                                 std::pair{last, right}};
    for (const auto& [text, x] : captions) {
        const CGRect place{x - Width / 2, bounds.y + bounds.height - CaptionHeight, Width, CaptionHeight};
        canvas.drawText(text, place, CaptionSize, canvas.textColor().faded(palette::Quiet),
                        platform::TextAlignment::Center);
    }
}

platform::Mark dotInLane(const CGRect& bounds, std::size_t lanes, std::size_t lane, double value,
                         const platform::Color& color) {
    const double radius = std::min(DotRadius, laneHeight(bounds, lanes) * 0.45);
    return dotAt({laneX(bounds, value), laneY(bounds, lanes, lane)}, radius, color);
}

} // namespace tonewright
