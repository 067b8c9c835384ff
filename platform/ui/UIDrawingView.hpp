// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A view that the program draws: a picture, and marks that move in front of it. Main thread only.
//
// The picture is drawn when the view is first shown, when its size or the desktop's colours have changed, and
// after `setNeedsDisplay`. Moving a mark repaints only its old and its new position, so that many views can
// animate at the same time.
#pragma once

#include "platform/ui/Canvas.hpp"
#include "platform/ui/Mark.hpp"
#include "platform/ui/UIView.hpp"

#include <functional>
#include <string_view>
#include <vector>

namespace platform {

class UIDrawingView final : public UIView {
  public:
    using Drawing = std::function<void(Canvas& canvas)>;

    UIDrawingView();
    explicit UIDrawingView(ImplementationPointer implementation);

    /// Sets the function that draws the picture, and redraws it with the next frame.
    void setDrawing(Drawing drawing);
    /// Redraws the picture with the next frame.
    void setNeedsDisplay() override;
    /// Replaces the marks. Later marks are painted over earlier ones.
    void setMarks(std::vector<Mark> marks);
    /// Returns the width in points that Canvas::drawText needs for `text` at `size` points in this view.
    [[nodiscard]] double textWidth(std::string_view text, double size) const;
};

} // namespace platform
