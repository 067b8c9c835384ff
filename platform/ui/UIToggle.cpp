// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/UIToggle.hpp"

#include "platform/ui/detail/ViewImplementation.hpp"
#include "platform/ui/toolkit/buttonKeys.hpp"
#include "platform/ui/widgets.hpp"

#include <gtk/gtk.h>

namespace platform {
namespace {

void onToggled(GtkToggleButton* button, gpointer self) {
    if (gtk_toggle_button_get_active(button) == FALSE) return;
    const auto onChosen = static_cast<UIToggle*>(self)->onChosen; // a copy: the call may replace the function
    if (onChosen) onChosen();
}

} // namespace

UIToggle::UIToggle(std::shared_ptr<UIView> content, const std::string& name, const UIToggle* fellow)
    : UIView(makeImplementation(gtk_toggle_button_new()))
    , _content(std::move(content)) {
    GtkWidget* widget = widgetOf(*this);
    gtk_button_set_child(GTK_BUTTON(widget), widgetOf(*_content));
    // Screen readers should read only the name, not the content as well.
    gtk_accessible_update_state(GTK_ACCESSIBLE(widgetOf(*_content)), GTK_ACCESSIBLE_STATE_HIDDEN, TRUE, -1);
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget), GTK_ACCESSIBLE_PROPERTY_LABEL, name.c_str(), -1);
    if (fellow != nullptr) {
        gtk_toggle_button_set_group(GTK_TOGGLE_BUTTON(widget), GTK_TOGGLE_BUTTON(widgetOf(*fellow)));
    }
    pressAtOnce(GTK_BUTTON(widget));
    g_signal_connect(widget, "toggled", G_CALLBACK(onToggled), this);
}

UIToggle::~UIToggle() {
    g_signal_handlers_disconnect_by_data(widgetOf(*this), this);
}

void UIToggle::choose() {
    gtk_toggle_button_set_active(GTK_TOGGLE_BUTTON(widgetOf(*this)), TRUE);
}

} // namespace platform
