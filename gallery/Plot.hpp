// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The picture of one easing curve: where its points lie in a rectangle, and the drawing of it. Any thread may
// reckon, the main thread draws.
#pragma once

#include "platform/ui/Canvas.hpp"
#include "shared/Common/Animator/Easing.hpp"

namespace tonewright {

class Plot {
  public:
    explicit Plot(EnumEasing type);

    /// Draws the curve, the two lines that it goes between, and its name below.
    void draw(platform::Canvas& canvas) const;
    /// Returns the point of a view of `width` and `height` where the curve's dot lies at `progress` (0 to 1)
    /// with the value `value`, of a movement from 0 to 1.
    [[nodiscard]] platform::Point at(double width, double height, double progress, double value) const;

    [[nodiscard]] EnumEasing type() const noexcept { return _type; }

  private:
    EnumEasing _type;
    double _lowest = 0; // of the values that the plot shows; every plot shows at least 0 to 1
    double _highest = 1;
};

} // namespace tonewright
