// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where widgets are in their window, in device pixels. Main thread only.
#pragma once

#include "platform/effects/view/X11Socket.hpp"

#include <gtk/gtk.h>

namespace platform::lv2 {

/// Returns the rectangle of `widget` in the window of `native`.
[[nodiscard]] PixelRect placeOf(GtkWidget* widget, GtkNative* native);
/// Returns the part of `place`, the rectangle of `widget`, that the widgets around it show.
[[nodiscard]] PixelRect visiblePartOf(const PixelRect& place, GtkWidget* widget, GtkNative* native);

} // namespace platform::lv2
