// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The layout manager of a container widget. Main thread only.
#pragma once

#include <functional>
#include <gtk/gtk.h>

namespace platform {

/// Returns the type, registering it first.
[[nodiscard]] GType containerLayoutType();

/// Sets the frames of everything in `container`, laid out at the given size, and in the containers inside it.
void updateFrames(GtkWidget* container, double width, double height);

/// Runs `place` as the layout of `container` and calls its listener. Defined with the widget.
void layOut(GtkWidget* container, const std::function<void()>& place);

} // namespace platform
