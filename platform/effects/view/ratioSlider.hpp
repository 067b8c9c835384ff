// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A slider for values of which equal ratios feel equal, a frequency for instance. The toolkit's slider has
// one number, which says where it stands and which assistive technology reads and sets. Here these are two:
// what is seen and dragged goes evenly from 0 to 1; what has the focus, the keys and the name has the value
// itself. Main thread only.
#pragma once

#include <gtk/gtk.h>

namespace platform {

struct RatioSlider {
    GtkWidget* widget = nullptr;  // to be put into a window: a floating reference
    GtkWidget* control = nullptr; // a GtkRange with the value, inside it
};

/// Makes one for the values from `low`, above 0, to a larger `high`; a key moves it by one of `steps`.
[[nodiscard]] RatioSlider makeRatioSlider(double low, double high, double steps);

} // namespace platform
