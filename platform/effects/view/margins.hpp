// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The space around what the host shows beside an effect's interface. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform::lv2 {

/// Sets all four margins of a widget, in pixels before scaling.
inline void setMargins(GtkWidget* widget, int pixels) {
    gtk_widget_set_margin_top(widget, pixels);
    gtk_widget_set_margin_bottom(widget, pixels);
    gtk_widget_set_margin_start(widget, pixels);
    gtk_widget_set_margin_end(widget, pixels);
}

} // namespace platform::lv2
