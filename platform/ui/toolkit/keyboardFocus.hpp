// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where the X server sends the keys of an active window, and how long the window shows which control has the
// focus. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Keeps the keyboard focus of `window` on its own controls while the pointer is over the X window of an
/// effect's interface. Window managers do so; without one, the server would give the keys to whatever is
/// under the pointer.
void keepKeysFromThePointer(GtkWindow* window);

/// Keep the focus ring of `window` on the screen from a key to the next click. The toolkit takes it away
/// after three seconds, and who works without a mouse then has to look for it.
void keepFocusShown(GtkWindow* window);

} // namespace platform
