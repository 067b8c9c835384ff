// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benches/timer/peers.hpp"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <glib.h>

namespace bench {

Dates glibDates(double interval, double seconds) {
    using Clock = std::chrono::steady_clock;
    struct Run {
        Clock::time_point start = Clock::now();
        Dates dates;
    } run;
    GMainLoop* loop = g_main_loop_new(nullptr, FALSE);
    const auto milliseconds = static_cast<guint>(std::max(1.0, std::round(interval * 1e3)));
    const guint timer = g_timeout_add(
        milliseconds,
        [](gpointer data) -> gboolean {
            auto& r = *static_cast<Run*>(data);
            r.dates.push_back(std::chrono::duration<double>(Clock::now() - r.start).count());
            return G_SOURCE_CONTINUE;
        },
        &run);
    g_timeout_add(
        static_cast<guint>((seconds + interval / 2) * 1e3),
        [](gpointer data) -> gboolean {
            g_main_loop_quit(static_cast<GMainLoop*>(data));
            return G_SOURCE_REMOVE;
        },
        loop);
    g_main_loop_run(loop);
    g_source_remove(timer);
    g_main_loop_unref(loop);
    return run.dates;
}

} // namespace bench
