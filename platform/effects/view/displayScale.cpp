// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/displayScale.hpp"

#include <algorithm>

namespace platform::lv2 {

float scaleOf(GdkDisplay* display) {
    int scale = 1;
    GListModel* monitors = gdk_display_get_monitors(display);
    for (guint i = 0; i < g_list_model_get_n_items(monitors); ++i) {
        auto* monitor = static_cast<GdkMonitor*>(g_list_model_get_item(monitors, i));
        scale = std::max(scale, gdk_monitor_get_scale_factor(monitor));
        g_object_unref(monitor);
    }
    return static_cast<float>(scale);
}

} // namespace platform::lv2
