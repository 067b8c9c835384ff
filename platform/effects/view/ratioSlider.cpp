// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/ratioSlider.hpp"

#include <cmath>
#include <memory>

namespace platform {
namespace {

constexpr auto FocusFlags = static_cast<GtkStateFlags>(GTK_STATE_FLAG_FOCUSED | GTK_STATE_FLAG_FOCUS_VISIBLE);

class Pair {
  public:
    Pair(double lowest, double highest, GtkWidget* seen, GtkWidget* read)
        : low(lowest)
        , high(highest)
        , place(GTK_RANGE(g_object_ref(seen)))
        , value(GTK_RANGE(g_object_ref(read))) {}
    ~Pair() {
        g_object_unref(place);
        g_object_unref(value);
    }
    Pair(const Pair&) = delete;
    Pair& operator=(const Pair&) = delete;

    void placeMoved() {
        if (isMoving) return;
        isMoving = true;
        gtk_range_set_value(value, low * std::pow(high / low, gtk_range_get_value(place)));
        follow(); // the owner may have rounded the value
        isMoving = false;
    }
    void valueMoved() {
        if (isMoving) return;
        isMoving = true;
        follow();
        isMoving = false;
    }
    void follow() const {
        gtk_range_set_value(place, std::log(gtk_range_get_value(value) / low) / std::log(high / low));
    }

    const double low, high;
    GtkRange* const place; // the visible slider, from 0 to 1
    GtkRange* const value; // the transparent slider over it, from low to high
    bool isMoving = false; // while true, the sliders' signals are ignored
};

GtkWidget* makeScale(double low, double high, double step, GtkAccessibleRole role) {
    auto* scale = GTK_WIDGET(g_object_new(GTK_TYPE_SCALE, "accessible-role", role, "adjustment",
                                          gtk_adjustment_new(low, low, high, step, 10 * step, 0), nullptr));
    gtk_range_set_round_digits(GTK_RANGE(scale), -1);
    gtk_scale_set_draw_value(GTK_SCALE(scale), FALSE);
    return scale;
}

void onFlags(GtkWidget* control, GtkStateFlags, Pair* pair) {
    const unsigned flags = gtk_widget_get_state_flags(control) & FocusFlags;
    auto* place = GTK_WIDGET(pair->place);
    gtk_widget_unset_state_flags(place, static_cast<GtkStateFlags>(FocusFlags & ~flags));
    gtk_widget_set_state_flags(place, static_cast<GtkStateFlags>(flags), FALSE);
}

} // namespace

RatioSlider makeRatioSlider(double low, double high, double steps) {
    GtkWidget* overlay = gtk_overlay_new();
    GtkWidget* place = makeScale(0, 1, 1 / steps, GTK_ACCESSIBLE_ROLE_PRESENTATION);
    GtkWidget* control = makeScale(low, high, (high - low) / steps, GTK_ACCESSIBLE_ROLE_SLIDER);
    // A range that is merely not focusable would still stop Tab, because its focus function reports that the
    // focus has moved.
    gtk_widget_set_can_focus(place, FALSE);
    gtk_widget_set_opacity(control, 0);
    gtk_widget_set_can_target(control, FALSE); // the pointer operates the visible slider
    gtk_overlay_set_child(GTK_OVERLAY(overlay), place);
    gtk_overlay_add_overlay(GTK_OVERLAY(overlay), control);

    auto pair = std::make_unique<Pair>(low, high, place, control);
    g_signal_connect_swapped(place, "value-changed", G_CALLBACK(+[](Pair* self) { self->placeMoved(); }),
                             pair.get());
    g_signal_connect_swapped(control, "value-changed", G_CALLBACK(+[](Pair* self) { self->valueMoved(); }),
                             pair.get());
    GtkGesture* click = gtk_gesture_click_new();
    gtk_event_controller_set_propagation_phase(GTK_EVENT_CONTROLLER(click), GTK_PHASE_CAPTURE);
    g_signal_connect_swapped(click, "pressed",
                             G_CALLBACK(+[](Pair* self) { gtk_widget_grab_focus(GTK_WIDGET(self->value)); }),
                             pair.get());
    gtk_widget_add_controller(place, GTK_EVENT_CONTROLLER(click));
    // Keys must move the value by ratios too, so they are passed to the visible slider.
    g_signal_connect(control, "move-slider", G_CALLBACK(+[](GtkRange* range, GtkScrollType step, Pair* self) {
                         g_signal_stop_emission_by_name(range, "move-slider");
                         g_signal_emit_by_name(self->place, "move-slider", step);
                     }),
                     pair.get());
    g_signal_connect(control, "state-flags-changed", G_CALLBACK(onFlags), pair.get());
    g_object_set_data_full(G_OBJECT(overlay), "ratio-slider", pair.release(),
                           [](gpointer data) { delete static_cast<Pair*>(data); });
    return {overlay, control};
}

} // namespace platform
