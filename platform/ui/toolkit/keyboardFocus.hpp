// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Keeps the keyboard focus inside an active window, and its focus ring visible. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Keeps the keyboard focus on the controls of `window` while the pointer is over the X window of an effect's
/// interface. Window managers do this; without one, the X server sends key events to the X window under the
/// pointer.
void keepKeysFromThePointer(GtkWindow* window);

/// Keeps the focus ring of `window` visible from a key press until the next click. By default, GTK hides it
/// after three seconds, and users without a mouse could no longer see which control has the focus.
void keepFocusShown(GtkWindow* window);

} // namespace platform
