// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Values from 0 to 1 as dots in horizontal lanes below each other, with room at both ends for curves that
// overshoot. Main thread only.
#pragma once

#include "platform/ui/UIDrawingView.hpp"

#include <cstddef>

namespace tonewright {

/// Returns the x of `value` in a view as wide as `bounds`; no further out than the view's edges.
[[nodiscard]] double laneX(const platform::CGRect& bounds, double value);
/// Returns the y of the middle of lane `lane` of `lanes`.
[[nodiscard]] double laneY(const platform::CGRect& bounds, std::size_t lanes, std::size_t lane);

/// Draws the lines along which the dots of `lanes` lanes move, and the two ends.
void drawLanes(platform::Canvas& canvas, std::size_t lanes);
[[nodiscard]] platform::Mark dotInLane(const platform::CGRect& bounds, std::size_t lanes, std::size_t lane,
                                       double value, const platform::Color& color);

} // namespace tonewright
