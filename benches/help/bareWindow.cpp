// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The limit of opening the manual: a GTK window with WebKit's library already loaded. At the first key press
// the program creates a web view with default settings and no delegates, which loads the file named by the
// argument.
#include <cstdio>
#include <cstdlib>
#include <string>
#include <unistd.h>
#include <webkit/webkit.h>

namespace {

gboolean onKey(GtkEventControllerKey*, guint, guint, GdkModifierType, gpointer uri) {
    auto* window = GTK_WINDOW(g_list_model_get_item(gtk_window_get_toplevels(), 0));
    if (gtk_window_get_child(window) == nullptr) {
        GtkWidget* view = webkit_web_view_new();
        gtk_window_set_child(window, view);
        webkit_web_view_load_uri(WEBKIT_WEB_VIEW(view), static_cast<const char*>(uri));
    }
    g_object_unref(window);
    return GDK_EVENT_STOP;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) return EXIT_FAILURE;
    // The same settings as in Tonewright, so that both programs draw in the same way.
    setenv("GSK_RENDERER", "cairo", 1);
    setenv("GDK_BACKEND", "x11", 1);
    setenv("GDK_DEBUG", "gl-disable", 0);
    if (geteuid() == 0) setenv("WEBKIT_DISABLE_SANDBOX_THIS_IS_DANGEROUS", "1", 1);
    gtk_init();
    std::string uri = std::string("file://") + argv[1];
    GtkWidget* window = gtk_window_new();
    gtk_window_set_default_size(GTK_WINDOW(window), 920, 680);
    GtkEventController* keys = gtk_event_controller_key_new();
    g_signal_connect(keys, "key-pressed", G_CALLBACK(onKey), uri.data());
    gtk_widget_add_controller(window, keys);
    gtk_window_present(GTK_WINDOW(window));
    std::fputs("ready\n", stderr);
    for (;;) g_main_context_iteration(nullptr, TRUE);
}
