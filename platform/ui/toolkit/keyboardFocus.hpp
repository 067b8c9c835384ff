// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where the X server sends the keys of an active window. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Keeps the keyboard focus of `window` on its own controls while the pointer is over the X window of an
/// effect's interface. Window managers do so; without one, the server would give the keys to whatever is
/// under the pointer.
void keepKeysFromThePointer(GtkWindow* window);

} // namespace platform
