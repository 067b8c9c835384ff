// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A slider with a logarithmic scale, for example for a frequency. A GtkScale has only one number, which is
// both the slider's position and the value that assistive technology reads and sets. Therefore two sliders
// are combined: the visible one, which the pointer drags, has the position from 0 to 1; the other, which has
// the focus and the accessible name, has the value. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

struct RatioSlider {
    GtkWidget* widget = nullptr;  // the widget to add to a window; a floating reference
    GtkWidget* control = nullptr; // the GtkRange with the value, inside `widget`
};

/// Creates a slider for values from `low` to `high` (0 < low < high). An arrow key moves it by one of `steps`
/// equal steps.
[[nodiscard]] RatioSlider makeRatioSlider(double low, double high, double steps);

} // namespace platform
