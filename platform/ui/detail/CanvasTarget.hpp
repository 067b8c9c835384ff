// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The toolkit's side of a canvas, for the platform's own code. Main thread only.
#pragma once

#include "platform/ui/Canvas.hpp"
#include "platform/ui/GObjectRef.hpp"

#include <gtk/gtk.h>
#include <string_view>

namespace platform {

struct Canvas::Target {
    GtkWidget* widget; // gives the font
    cairo_t* cairo;
    double width;
    double height;
    Color textColor;
};

/// Returns `text` in one line of the desktop's font at `widget`, `size` points high.
[[nodiscard]] GObjectRef<PangoLayout> lineOfText(GtkWidget* widget, std::string_view text, double size);

} // namespace platform
