// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The limit of starting: a process that shows one empty GTK window and prints when its first frame was
// painted. Nothing can be left out: without gtk_init there is no display, without a window no surface,
// without presenting it no frame, and without the frame clock's signal the time is unknown. The process runs
// until it is terminated, because it also serves as the limit for memory.
#include <gtk/gtk.h>

#include <cstdio>
#include <cstdlib>

namespace {

void onAfterPaint(GdkFrameClock* clock, gpointer data) {
    const gint64 now = g_get_monotonic_time();
    g_signal_handlers_disconnect_by_data(clock, data);
    std::fprintf(stderr, "first frame %lld.%06lld\n", static_cast<long long>(now / G_USEC_PER_SEC),
                 static_cast<long long>(now % G_USEC_PER_SEC));
}

void onRealise(GtkWidget* window, gpointer data) {
    g_signal_connect(gtk_widget_get_frame_clock(window), "after-paint", G_CALLBACK(onAfterPaint), data);
}

} // namespace

int main() {
    // The same renderer and window system as in Tonewright.
    setenv("GSK_RENDERER", "cairo", 1);
    setenv("GDK_BACKEND", "x11", 1);
    gtk_init();
    GtkWidget* window = gtk_window_new();
    gtk_window_set_default_size(GTK_WINDOW(window), 920, 680);
    g_signal_connect(window, "realize", G_CALLBACK(onRealise), window);
    gtk_window_present(GTK_WINDOW(window));
    for (;;) g_main_context_iteration(nullptr, TRUE);
}
