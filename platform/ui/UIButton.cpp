// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIButton.hpp"

#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/toolkit/buttonKeys.hpp"
#include "platform/ui/widgets.hpp"

#include <gtk/gtk.h>

namespace platform {
namespace {

// Moves the focus to the nearest sibling that accepts it: one after `widget` if possible, else one before it.
void focusNeighborOf(GtkWidget* widget) {
    for (const auto neighbor : {gtk_widget_get_next_sibling, gtk_widget_get_prev_sibling}) {
        for (GtkWidget* other = neighbor(widget); other != nullptr; other = neighbor(other)) {
            if (gtk_widget_grab_focus(other) != FALSE) return;
        }
    }
}

} // namespace

UIButton::UIButton(const std::string& title)
    : UIButton(makeImplementation(gtk_button_new_with_mnemonic(title.c_str()))) {}

UIButton::UIButton(ImplementationPointer implementation)
    : UIView(std::move(implementation)) {
    pressAtOnce(GTK_BUTTON(widgetOf(*this)));
}

bool UIButton::isEnabled() const {
    return gtk_widget_get_sensitive(widgetOf(*this)) != FALSE;
}

void UIButton::setEnabled(bool enabled) {
    GtkWidget* widget = widgetOf(*this);
    const bool losesFocus = !enabled && gtk_widget_is_focus(widget) != FALSE;
    gtk_widget_set_sensitive(widget, enabled ? TRUE : FALSE);
    if (losesFocus) focusNeighborOf(widget);
}

void UIButton::press() {
    g_signal_emit_by_name(widgetOf(*this), "clicked");
}

} // namespace platform
