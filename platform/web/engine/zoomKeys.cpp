// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/web/engine/zoomKeys.hpp"

#include "platform/web/engine/pdfViewer.hpp"

#include <algorithm>

namespace platform {
namespace {

constexpr double Step = 1.1;
constexpr double Smallest = 0.3;
constexpr double Largest = 5.0;

gboolean onKey(GtkEventControllerKey* keys, guint keyval, guint, GdkModifierType state, gpointer) {
    constexpr unsigned Modifiers = GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SUPER_MASK | GDK_META_MASK;
    if ((static_cast<unsigned>(state) & Modifiers) != GDK_CONTROL_MASK) return GDK_EVENT_PROPAGATE;
    auto* view = WEBKIT_WEB_VIEW(gtk_event_controller_get_widget(GTK_EVENT_CONTROLLER(keys)));
    if (showsPdf(view)) return GDK_EVENT_PROPAGATE; // the viewer zooms by itself
    double level = webkit_web_view_get_zoom_level(view);
    switch (keyval) {
    case GDK_KEY_plus:
    case GDK_KEY_equal:
    case GDK_KEY_KP_Add:
        level *= Step;
        break;
    case GDK_KEY_minus:
    case GDK_KEY_KP_Subtract:
        level /= Step;
        break;
    case GDK_KEY_0:
    case GDK_KEY_KP_0:
        level = 1;
        break;
    default:
        return GDK_EVENT_PROPAGATE;
    }
    webkit_web_view_set_zoom_level(view, std::clamp(level, Smallest, Largest));
    return GDK_EVENT_STOP;
}

} // namespace

void addZoomKeys(WebKitWebView* view) {
    GtkEventController* keys = gtk_event_controller_key_new();
    gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_BUBBLE);
    g_signal_connect(keys, "key-pressed", G_CALLBACK(onKey), nullptr);
    gtk_widget_add_controller(GTK_WIDGET(view), keys);
}

} // namespace platform
