// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Enlarges a window for its contents. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Grows the window of `widget` so that the widget has this size, in points, as far as the screen permits;
/// moves it if its place does not allow that. A window that is maximised or already larger stays as it is.
void growWindow(GtkWidget* widget, int width, int height);

} // namespace platform
