// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The widget of a UIDrawingView, product::DrawingType in interface descriptions. Main thread only.
#pragma once

#include "platform/ui/Mark.hpp"

#include <functional>
#include <gtk/gtk.h>
#include <vector>

namespace platform {

/// What a drawing widget shows.
struct DrawingContent {
    std::function<void(Canvas&)> draw; // empty: no picture
    std::vector<Mark> marks;
    bool isOutdated = true; // the picture must be drawn again
};

/// Returns the type, registering it first.
[[nodiscard]] GType drawingWidgetType();
[[nodiscard]] bool isDrawingWidget(GtkWidget* widget);
[[nodiscard]] DrawingContent& contentOf(GtkWidget* widget);

} // namespace platform
