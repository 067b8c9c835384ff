// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A view that the program draws: a static picture, and marks that move in front of it. Main thread
// only.
//
// The picture is drawn when the view is first shown, when its size or the desktop's colours have changed, and
// after `setNeedsDisplay`. Moving a mark repaints only its old and new place, so that many views can move at
// once.
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

    /// Sets the function that draws the picture from now on.
    void setDrawing(Drawing drawing);
    /// Redraws the picture with the next frame.
    void setNeedsDisplay() override;
    /// Shows `marks`, in this order, in place of the previous ones.
    void setMarks(std::vector<Mark> marks);
    /// Returns the width in points of `text` in one line, as a drawing of this view writes it `size` points
    /// high.
    [[nodiscard]] double textWidth(std::string_view text, double size) const;
};

} // namespace platform
