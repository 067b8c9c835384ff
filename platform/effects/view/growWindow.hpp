// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Enlarges a window to fit its contents. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Enlarges the window of `widget` so that `widget` has at least the size `width` x `height`, in GTK's
/// logical pixels, as far as the screen permits. Moves the window if it would otherwise leave the screen.
/// Does nothing if the window is maximised, full-screen or already large enough.
void growWindow(GtkWidget* widget, int width, int height);

} // namespace platform
