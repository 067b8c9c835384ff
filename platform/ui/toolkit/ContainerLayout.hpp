// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The layout manager of a container widget. Main thread only.
#pragma once

#include <functional>
#include <gtk/gtk.h>

namespace platform {

/// Returns the GObject type of the layout manager. Registers the type at the first call.
[[nodiscard]] GType containerLayoutType();

/// Sets the frames of all children of `container` for the given size, and recursively those of the containers
/// among them.
void updateFrames(GtkWidget* container, double width, double height);

/// Lays out `container` by calling `place`, then calls its layout listener. Defined in ContainerWidget.cpp.
void layOut(GtkWidget* container, const std::function<void()>& place);

} // namespace platform
