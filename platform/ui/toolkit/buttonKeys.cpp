// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/toolkit/buttonKeys.hpp"

namespace platform {
namespace {

// The key that is held down in a window. Lives as long as the window.
struct HeldKey {
    guint keycode = 0;       // the last key pressed; 0 after its release
    bool isRepeated = false; // the current press is an automatic repetition
};

GQuark heldKeyQuark() {
    static const GQuark key = g_quark_from_static_string("platform-held-key");
    return key;
}

HeldKey* heldKeyOf(GtkWidget* widget) {
    GtkRoot* root = gtk_widget_get_root(widget);
    return root == nullptr ? nullptr
                           : static_cast<HeldKey*>(g_object_get_qdata(G_OBJECT(root), heldKeyQuark()));
}

bool isRepeated(GtkWidget* widget) {
    const HeldKey* held = heldKeyOf(widget);
    return held != nullptr && held->isRepeated;
}

GtkWidget* widgetOfKeys(GtkEventControllerKey* keys) {
    return gtk_event_controller_get_widget(GTK_EVENT_CONTROLLER(keys));
}

gboolean keyGoesDown(GtkEventControllerKey* keys, guint, guint keycode, GdkModifierType, gpointer) {
    if (HeldKey* held = heldKeyOf(widgetOfKeys(keys))) *held = {keycode, held->keycode == keycode};
    return GDK_EVENT_PROPAGATE;
}

void keyGoesUp(GtkEventControllerKey* keys, guint, guint keycode, GdkModifierType, gpointer) {
    HeldKey* held = heldKeyOf(widgetOfKeys(keys));
    if (held != nullptr && held->keycode == keycode) *held = {};
}

// While another window has the focus, key releases are not reported to this one.
void activeChanges(GtkWidget* window, GParamSpec*, gpointer) {
    if (HeldKey* held = heldKeyOf(window)) *held = {};
}

bool isSpace(guint keyval) {
    return keyval == GDK_KEY_space || keyval == GDK_KEY_KP_Space;
}

bool pressesButtons(guint keyval, GdkModifierType state) {
    constexpr unsigned Modifiers = GDK_CONTROL_MASK | GDK_ALT_MASK | GDK_SUPER_MASK | GDK_META_MASK;
    const bool isPlain = (static_cast<unsigned>(state) & Modifiers) == 0;
    return isPlain && (isSpace(keyval) || keyval == GDK_KEY_Return || keyval == GDK_KEY_KP_Enter ||
                       keyval == GDK_KEY_ISO_Enter);
}

void click(GtkWidget* button) {
    if (!isRepeated(button)) g_signal_emit_by_name(button, "clicked");
}

gboolean onButtonKey(GtkEventControllerKey* keys, guint keyval, guint, GdkModifierType state, gpointer) {
    if (!pressesButtons(keyval, state)) return GDK_EVENT_PROPAGATE;
    click(widgetOfKeys(keys));
    return GDK_EVENT_STOP;
}

gboolean onMnemonic(GtkWidget* button, gboolean isOneOfSeveral, gpointer) {
    if (isOneOfSeveral != FALSE) return FALSE; // the letter only moves the focus between these buttons
    click(button);
    return TRUE;
}

gboolean onUnusedKey(GtkEventControllerKey* keys, guint keyval, guint, GdkModifierType, gpointer) {
    GtkWidget* window = widgetOfKeys(keys);
    if (!isSpace(keyval)) return GDK_EVENT_PROPAGATE;
    if (isRepeated(window)) return GDK_EVENT_STOP;
    // A GtkSwitch is activated by the window's binding for Space. The shortcuts, which now come first, must
    // not take the key from it.
    GtkWidget* focus = gtk_root_get_focus(GTK_ROOT(window));
    return GTK_IS_SWITCH(focus) && gtk_widget_activate(focus) != FALSE ? GDK_EVENT_STOP : GDK_EVENT_PROPAGATE;
}

GtkEventController* addKeys(GtkWidget* widget, GtkPropagationPhase phase, GCallback pressed) {
    GtkEventController* keys = gtk_event_controller_key_new();
    gtk_event_controller_set_propagation_phase(keys, phase);
    g_signal_connect(keys, "key-pressed", pressed, nullptr);
    gtk_widget_add_controller(widget, keys);
    return keys;
}

// By default a window handles shortcuts of global scope after its own key bindings. Its binding for Space
// activates the focused control and consumes the key even if the control does not react to it. GTK runs the
// controllers of a widget in reverse order of their addition, so adding the shortcut controller again moves
// it to the front.
void askShortcutsBeforeBindings(GtkWidget* window) {
    GListModel* controllers = gtk_widget_observe_controllers(window);
    GtkEventController* shortcuts = nullptr;
    for (guint i = 0; i < g_list_model_get_n_items(controllers) && shortcuts == nullptr; ++i) {
        auto* controller = static_cast<GtkEventController*>(g_list_model_get_item(controllers, i));
        if (g_strcmp0(gtk_event_controller_get_name(controller), "gtk-shortcut-manager-bubble") == 0) {
            shortcuts = controller;
        } else {
            g_object_unref(controller);
        }
    }
    g_object_unref(controllers);
    if (shortcuts == nullptr) {
        return;
    }
    gtk_widget_remove_controller(window, shortcuts);
    gtk_widget_add_controller(window, shortcuts); // takes over the reference
}

} // namespace

void pressAtOnce(GtkButton* button) {
    addKeys(GTK_WIDGET(button), GTK_PHASE_TARGET, G_CALLBACK(onButtonKey));
    g_signal_connect(button, "mnemonic-activate", G_CALLBACK(onMnemonic), nullptr);
}

void watchHeldKeys(GtkWindow* window) {
    g_object_set_qdata_full(G_OBJECT(window), heldKeyQuark(), new HeldKey,
                            [](gpointer held) { delete static_cast<HeldKey*>(held); });
    GtkEventController* keys = addKeys(GTK_WIDGET(window), GTK_PHASE_CAPTURE, G_CALLBACK(keyGoesDown));
    g_signal_connect(keys, "key-released", G_CALLBACK(keyGoesUp), nullptr);
    g_signal_connect(window, "notify::is-active", G_CALLBACK(activeChanges), nullptr);
    askShortcutsBeforeBindings(GTK_WIDGET(window));
    // Runs before the shortcuts and after the focused control.
    addKeys(GTK_WIDGET(window), GTK_PHASE_BUBBLE, G_CALLBACK(onUnusedKey));
}

} // namespace platform
