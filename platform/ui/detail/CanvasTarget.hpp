// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The cairo side of a canvas. Main thread only.
#pragma once

#include "platform/ui/Canvas.hpp"
#include "platform/ui/GObjectRef.hpp"

#include <gtk/gtk.h>
#include <string_view>

namespace platform {

struct Canvas::Target {
    GtkWidget* widget; // whose font is used for text
    cairo_t* cairo;
    double width;
    double height;
    Color textColor;
};

/// Returns a layout of `text` as one line in the font of `widget`, `size` points high.
[[nodiscard]] GObjectRef<PangoLayout> lineOfText(GtkWidget* widget, std::string_view text, double size);

} // namespace platform
