// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIDrawingView.hpp"

#include "platform/ui/detail/CanvasTarget.hpp"
#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/toolkit/DrawingWidget.hpp"
#include "platform/ui/widgets.hpp"

#include <cmath>
#include <gtk/gtk.h>
#include <utility>

namespace platform {

UIDrawingView::UIDrawingView()
    : UIDrawingView(makeImplementation(GTK_WIDGET(g_object_new(drawingWidgetType(), nullptr)))) {}

UIDrawingView::UIDrawingView(ImplementationPointer implementation)
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
