// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shows values from 0 to 1 as dots in horizontal lanes, one below the other. There is room at both ends for
// curves that overshoot, and an axis with captions at the bottom. Main thread only.
#pragma once

#include "platform/ui/UIDrawingView.hpp"

#include <cstddef>
#include <string_view>

namespace tonewright {

inline constexpr double LanePadding = 8; // in points, around the lanes

/// Returns the y coordinate of the middle of lane number `lane` of `lanes` lanes.
[[nodiscard]] double laneY(const platform::CGRect& bounds, std::size_t lanes, std::size_t lane);
/// Returns the height of each of `lanes` lanes.
[[nodiscard]] double laneHeight(const platform::CGRect& bounds, std::size_t lanes);

/// Draws the axis and the guide lines of `lanes` lanes in `bounds`.
void drawLanes(platform::Canvas& canvas, const platform::CGRect& bounds, std::size_t lanes);
/// Draws the captions of an axis along the lower edge of `bounds`: `first` at the x coordinate `left`, `last`
/// at `right`, and `name` between them.
void captionAxis(platform::Canvas& canvas, const platform::CGRect& bounds, double left, double right,
                 std::string_view first, std::string_view name, std::string_view last);
/// Returns the dot for `value`. It never leaves `bounds`.
[[nodiscard]] platform::Mark dotInLane(const platform::CGRect& bounds, std::size_t lanes, std::size_t lane,
                                       double value, const platform::Color& color);

} // namespace tonewright
