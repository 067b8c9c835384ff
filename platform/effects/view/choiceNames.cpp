// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/view/choiceNames.hpp"

namespace platform {
namespace {

// Sets the accessible names of the items of an open list, which GTK leaves empty.
void nameItems(GtkWidget* list) {
    for (GtkWidget* item = gtk_widget_get_first_child(list); item != nullptr;
         item = gtk_widget_get_next_sibling(item)) {
        GtkWidget* part = item;
        while (part != nullptr && !GTK_IS_LABEL(part)) part = gtk_widget_get_first_child(part);
        if (part != nullptr) {
            gtk_accessible_update_property(GTK_ACCESSIBLE(item), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                           gtk_label_get_text(GTK_LABEL(part)), -1);
        }
    }
}

} // namespace

void nameChoiceBox(GtkWidget* widget, const std::string& name, const std::string& choice) {
    const auto label = [](GtkWidget* part, const std::string& text) {
        gtk_accessible_update_property(GTK_ACCESSIBLE(part), GTK_ACCESSIBLE_PROPERTY_LABEL, text.c_str(), -1);
    };
    if (GTK_IS_TOGGLE_BUTTON(widget)) label(widget, name + ": " + choice);
    if (GTK_IS_DROP_DOWN(widget) || GTK_IS_LIST_VIEW(widget)) label(widget, name);
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        nameChoiceBox(child, name, choice);
    }
}

void nameItemsWhenOpened(GtkWidget* widget) {
    if (GTK_IS_LIST_VIEW(widget)) {
        g_signal_connect(widget, "map", G_CALLBACK(+[](GtkWidget* list, gpointer) { nameItems(list); }),
                         nullptr);
    }
    for (GtkWidget* child = gtk_widget_get_first_child(widget); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        nameItemsWhenOpened(child);
    }
}

} // namespace platform
