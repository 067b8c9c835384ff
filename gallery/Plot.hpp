// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Draws an easing curve with its name as a caption, and computes the positions of the curve's points. Main
// thread only.
#pragma once

#include "platform/ui/Canvas.hpp"
#include "shared/Common/Animator/Easing.hpp"

namespace tonewright {

class Plot {
  public:
    static constexpr double CaptionSize = 10.5; // font size in points

    explicit Plot(EnumEasing type);

    /// Sets the number of lines of the caption. With 2, the curve's shape ("easeOutIn") is above its family
    /// ("Quad").
    void setCaptionLines(int lines) { _captionLines = lines; }
    /// Draws the curve, lines for the values 0 and 1, and the caption.
    void draw(platform::Canvas& canvas) const;
    /// Returns the position of the curve's dot in a view of this size, at `progress` (0 to 1) of a movement
    /// from 0 to 1 and with its current value `value`.
    [[nodiscard]] platform::Point at(double width, double height, double progress, double value) const;

    [[nodiscard]] EnumEasing type() const noexcept { return _type; }

  private:
    [[nodiscard]] double captionHeight() const;

    EnumEasing _type;
    int _captionLines = 1;
    double _lowest = 0; // lowest and highest value in the plot, which shows at least 0 to 1
    double _highest = 1;
};

} // namespace tonewright
