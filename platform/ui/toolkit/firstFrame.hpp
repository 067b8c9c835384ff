// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What happens once the first frame of a window is on the screen. Main thread only.
#pragma once

#include <functional>
#include <gtk/gtk.h>

namespace platform {

/// Calls `task` after the first frame of `window`, which must not have been shown yet.
void afterFirstFrame(GtkWidget* window, std::function<void()> task);

/// Writes the monotonic time to standard error if the environment asks for it.
void traceFirstFrame();

} // namespace platform
