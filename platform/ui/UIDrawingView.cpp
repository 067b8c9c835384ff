// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIDrawingView.hpp"

#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/detail/viewWidget.hpp"
#include "platform/ui/toolkit/CanvasTarget.hpp"
#include "platform/ui/toolkit/DrawingWidget.hpp"

#include <cmath>
#include <utility>

namespace platform {

Mark dotAt(Point center, double radius, const Color& color) noexcept {
    return {{center.x - radius, center.y - radius, 2 * radius, 2 * radius}, radius, color};
}

UIDrawingView::UIDrawingView()
    : UIDrawingView(
          std::make_unique<Implementation>(GTK_WIDGET(g_object_new(drawingWidgetType(), nullptr)))) {}

UIDrawingView::UIDrawingView(std::unique_ptr<Implementation> implementation)
    : UIView(std::move(implementation)) {}

void UIDrawingView::setDrawing(Drawing drawing) {
    contentOf(widgetOf(*this)).draw = std::move(drawing);
    setNeedsDisplay();
}

void UIDrawingView::setNeedsDisplay() {
    contentOf(widgetOf(*this)).isOutdated = true;
    UIView::setNeedsDisplay();
}

void UIDrawingView::setMarks(std::vector<Mark> marks) {
    auto& shown = contentOf(widgetOf(*this)).marks;
    if (shown == marks) return;
    shown = std::move(marks);
    UIView::setNeedsDisplay();
}

double UIDrawingView::textWidth(std::string_view text, double size) const {
    if (!std::isfinite(size)) return 0;
    int width = 0;
    pango_layout_get_size(lineOfText(widgetOf(*this), text, size).get(), &width, nullptr);
    return static_cast<double>(width) / PANGO_SCALE;
}

} // namespace platform
