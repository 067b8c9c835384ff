// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The picture of one easing curve with its name as a caption: where the curve's points lie in a rectangle,
// and the drawing of both. Main thread only.
#pragma once

#include "platform/ui/Canvas.hpp"
#include "shared/Common/Animator/Easing.hpp"

namespace tonewright {

class Plot {
  public:
    static constexpr double CaptionSize = 10.5; // of the letters, in points

    explicit Plot(EnumEasing type);

    /// Writes the name in one line, or, where `lines` is 2, the curve's kind ("easeOutIn") above its family
    /// ("Quad").
    void setCaptionLines(int lines) { _captionLines = lines; }
    /// Draws the curve, the two lines that it goes between, and its name below.
    void draw(platform::Canvas& canvas) const;
    /// Returns the point of a view of `width` and `height` where the curve's dot lies at `progress` (0 to 1)
    /// with the value `value`, of a movement from 0 to 1.
    [[nodiscard]] platform::Point at(double width, double height, double progress, double value) const;

    [[nodiscard]] EnumEasing type() const noexcept { return _type; }

  private:
    [[nodiscard]] double captionHeight() const;

    EnumEasing _type;
    int _captionLines = 1;
    double _lowest = 0; // of the values that the plot shows; every plot shows at least 0 to 1
    double _highest = 1;
};

} // namespace tonewright
