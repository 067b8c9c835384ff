// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The scale factor that interfaces are told. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform::lv2 {

/// Returns the greatest scale factor of the display's monitors, because an interface is told only once.
[[nodiscard]] float scaleOf(GdkDisplay* display);

} // namespace platform::lv2
