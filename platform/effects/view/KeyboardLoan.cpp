// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/KeyboardLoan.hpp"

#include <utility>

namespace platform::lv2 {
namespace {

// Returns whether `widget` or a descendant has a mnemonic for Alt with this key.
bool hasMnemonic(GtkWidget* widget, guint key) {
    if (gtk_widget_get_mapped(widget) == FALSE) return false;
    if (GTK_IS_LABEL(widget) &&
        gdk_keyval_to_lower(gtk_label_get_mnemonic_keyval(GTK_LABEL(widget))) == gdk_keyval_to_lower(key)) {
        return true;
    }
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        if (hasMnemonic(child, key)) return true;
    }
    return false;
}

} // namespace

bool KeyboardLoan::takes(KeySym key, bool isWithAlt) {
    GtkRoot* root = gtk_widget_get_root(_area);
    if (root == nullptr || (isWithAlt && !hasMnemonic(GTK_WIDGET(root), static_cast<guint>(key)))) {
        return false;
    }
    // If a click gave the interface the keyboard, another widget may still have GTK's focus and would react
    // to the space bar.
    if (gtk_root_get_focus(root) != _area) gtk_widget_grab_focus(_area);
    giveBackAfterKey(root);
    return true;
}

// Returns the keyboard to the interface when the key is released, unless the focus has moved.
void KeyboardLoan::giveBackAfterKey(GtkRoot* root) {
    if (_controller != nullptr) return;
    GtkEventController* keys = gtk_event_controller_key_new();
    gtk_event_controller_set_propagation_phase(keys, GTK_PHASE_CAPTURE);
    // Deferred until the key event is handled, because a widget that it activates may move the focus.
    const auto release = +[](GtkEventController*, guint, guint, GdkModifierType, KeyboardLoan* self) {
        if (self->_idle != 0) return;
        self->_idle = g_idle_add(
            [](gpointer loan) -> gboolean {
                static_cast<KeyboardLoan*>(loan)->giveBack();
                return G_SOURCE_REMOVE;
            },
            self);
    };
    g_signal_connect(keys, "key-released", G_CALLBACK(release), this);
    _controller = keys;
    g_object_add_weak_pointer(G_OBJECT(keys), reinterpret_cast<gpointer*>(&_controller));
    gtk_widget_add_controller(GTK_WIDGET(root), keys);
}

void KeyboardLoan::giveBack() {
    _idle = 0;
    if (_controller == nullptr) return;
    GtkWidget* root = gtk_event_controller_get_widget(_controller);
    removeController();
    if (GTK_IS_WINDOW(root) && gtk_window_is_active(GTK_WINDOW(root)) != FALSE &&
        gtk_root_get_focus(GTK_ROOT(root)) == _area) {
        (void)_keys.giveKeyboard();
    }
}

void KeyboardLoan::cancel() {
    if (_idle != 0) g_source_remove(std::exchange(_idle, 0));
    removeController();
}

void KeyboardLoan::removeController() {
    if (_controller == nullptr) return;
    g_object_remove_weak_pointer(G_OBJECT(_controller), reinterpret_cast<gpointer*>(&_controller));
    GtkEventController* controller = std::exchange(_controller, nullptr);
    gtk_widget_remove_controller(gtk_event_controller_get_widget(controller), controller);
}

} // namespace platform::lv2
