// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/detail/firstFrame.hpp"

#include "platform/foundation/console.hpp"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace platform {
namespace {

using Task = std::function<void()>;

void onAfterPaint(GdkFrameClock* clock, gpointer data) {
    const std::unique_ptr<Task> task(static_cast<Task*>(data));
    g_signal_handlers_disconnect_by_data(clock, data);
    (*task)();
}

void onRealise(GtkWidget* window, gpointer data) {
    g_signal_handlers_disconnect_by_data(window, data);
    g_signal_connect(gtk_widget_get_frame_clock(window), "after-paint", G_CALLBACK(onAfterPaint), data);
}

} // namespace

void afterFirstFrame(GtkWidget* window, std::function<void()> task) {
    g_signal_connect(window, "realize", G_CALLBACK(onRealise), new Task(std::move(task)));
}

void traceFirstFrame() {
    if (std::getenv("TONEWRIGHT_TRACE_START") == nullptr) return;
    const std::int64_t now = g_get_monotonic_time();
    char line[64];
    std::snprintf(line, sizeof line, "first frame %" PRId64 ".%06" PRId64, now / 1'000'000, now % 1'000'000);
    warn(line);
}

} // namespace platform
