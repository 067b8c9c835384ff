// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The look of the application: its style sheet, the light or dark scheme, and the window's icon. Main thread
// only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Applies the style sheet `name`.css of the resources. Does nothing if there is no such resource.
void applyStyleSheet(const char* name);

/// Follows the desktop's preference for a light or dark scheme ("color-scheme" in the settings portal), now
/// and whenever it changes. Does not block. Without a portal, GTK's own setting applies.
void followColorScheme();

/// Sets the icon of `window`, which must be realised, to the installed PNG files called `name`.
void showIcon(GtkWindow* window, const char* name);

} // namespace platform
