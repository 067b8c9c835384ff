// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Values from 0 to 1 as dots in horizontal lanes below each other, with room at both ends for curves that
// overshoot and a captioned axis below. Main thread only.
#pragma once

#include "platform/ui/UIDrawingView.hpp"

#include <cstddef>
#include <string_view>

namespace tonewright {

inline constexpr double LanePadding = 8; // in points, around the lanes and what is beside them

/// Returns the y of the middle of lane `lane` of `lanes`.
[[nodiscard]] double laneY(const platform::CGRect& bounds, std::size_t lanes, std::size_t lane);
/// Returns the height that each of `lanes` lanes has.
[[nodiscard]] double laneHeight(const platform::CGRect& bounds, std::size_t lanes);

/// Draws the lines along which the dots of `lanes` lanes move in `bounds`, and the axis.
void drawLanes(platform::Canvas& canvas, const platform::CGRect& bounds, std::size_t lanes);
/// Draws the captions of an axis from x `left` to x `right` along the lower edge of `bounds`: its name and
/// what is at its two ends.
void captionAxis(platform::Canvas& canvas, const platform::CGRect& bounds, double left, double right,
                 std::string_view first, std::string_view name, std::string_view last);
/// Returns the dot for `value`; no further out than the edges of `bounds`.
[[nodiscard]] platform::Mark dotInLane(const platform::CGRect& bounds, std::size_t lanes, std::size_t lane,
                                       double value, const platform::Color& color);

} // namespace tonewright
