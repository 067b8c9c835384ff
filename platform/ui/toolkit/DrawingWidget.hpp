// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The GTK widget of a UIDrawingView. Interface descriptions use it under the name product::DrawingType. Main
// thread only.
#pragma once

#include "platform/ui/Mark.hpp"

#include <functional>
#include <gtk/gtk.h>
#include <vector>

namespace platform {

/// The content of a drawing widget.
struct DrawingContent {
    std::function<void(Canvas&)> draw; // may be empty
    std::vector<Mark> marks;
    bool isOutdated = true; // the picture must be drawn again
};

/// Returns the GObject type of the widget. Registers the type at the first call.
[[nodiscard]] GType drawingWidgetType();
[[nodiscard]] bool isDrawingWidget(GtkWidget* widget);
[[nodiscard]] DrawingContent& contentOf(GtkWidget* widget);

} // namespace platform
