// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs a task after the first frame of a window has been drawn. Main thread only.
#pragma once

#include <functional>
#include <gtk/gtk.h>

namespace platform {

/// Calls `task` after the first frame of `window` has been drawn. The window must not be realised yet.
void afterFirstFrame(GtkWidget* window, std::function<void()> task);

/// Writes the monotonic time to standard error if product::TraceStartVariable is set in the environment.
void traceFirstFrame();

} // namespace platform
