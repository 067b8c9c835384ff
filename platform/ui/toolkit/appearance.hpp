// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// How the application looks: the style sheet among the resources, light or dark as the desktop says, the
// icon. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

/// Applies the style sheet `name`.css of the resources; without one the toolkit's own look stays.
void applyStyleSheet(const char* name);

/// Follows the desktop's choice of light or dark (the settings portal's "color-scheme"), now and when it
/// changes. It is asked for without waiting; where there is no portal the toolkit's own setting holds.
void followColorScheme();

/// Gives `window`, which is realised, the icon `name`: its PNG files beside the resources.
void showIcon(GtkWindow* window, const char* name);

} // namespace platform
