// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The look of the application: the style sheet among the resources, light or dark as the desktop prefers, the
// icon. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Applies the style sheet `name`.css of the resources; without one the toolkit's own look stays.
void applyStyleSheet(const char* name);

/// Follows the desktop's choice of light or dark (the settings portal's "color-scheme"), now and when it
/// changes. The request does not block; without a portal the toolkit's own setting counts.
void followColorScheme();

/// Sets the icon of `window`, which is realised, to `name`: PNG files beside the resources.
void showIcon(GtkWindow* window, const char* name);

} // namespace platform
