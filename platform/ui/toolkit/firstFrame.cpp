// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/toolkit/firstFrame.hpp"

#include "platform/foundation/console.hpp"
#include "platform/foundation/product.hpp"

#include <cinttypes>
#include <cstdio>
#include <cstdlib>
#include <memory>

namespace platform {
namespace {

using Task = std::shared_ptr<const std::function<void()>>;

// Connects `handler` with its own reference to the task. Disconnecting releases the reference, also if the
// window is destroyed before it is drawn.
void connect(gpointer object, const char* signal, GCallback handler, const Task& task) {
    const auto release = [](gpointer held, GClosure*) { delete static_cast<Task*>(held); };
    g_signal_connect_data(object, signal, handler, std::make_unique<Task>(task).release(), release,
                          static_cast<GConnectFlags>(0));
}

void onAfterPaint(GdkFrameClock* clock, gpointer held) {
    const Task task = *static_cast<Task*>(held);
    g_signal_handlers_disconnect_by_data(clock, held);
    (*task)();
}

void onRealise(GtkWidget* window, gpointer held) {
    const Task task = *static_cast<Task*>(held);
    g_signal_handlers_disconnect_by_data(window, held);
    connect(gtk_widget_get_frame_clock(window), "after-paint", G_CALLBACK(onAfterPaint), task);
}

} // namespace

void afterFirstFrame(GtkWidget* window, std::function<void()> task) {
    connect(window, "realize", G_CALLBACK(onRealise),
            std::make_shared<const std::function<void()>>(std::move(task)));
}

void traceFirstFrame() {
    if (std::getenv(product::TraceStartVariable) == nullptr) return;
    const std::int64_t now = g_get_monotonic_time();
    char line[64];
    std::snprintf(line, sizeof line, "first frame %" PRId64 ".%06" PRId64, now / 1'000'000, now % 1'000'000);
    warn(line);
}

} // namespace platform
