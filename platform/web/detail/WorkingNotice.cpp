// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/web/detail/WorkingNotice.hpp"

#include "platform/foundation/translated.hpp"
#include "platform/ui/widgets.hpp"

#include <utility>

namespace platform {
namespace {

constexpr guint Patience = 500; // milliseconds
constexpr int SpinnerSize = 24; // points

} // namespace

void WorkingNotice::begin() {
    end();
    const auto onTime = +[](gpointer data) -> gboolean {
        auto* self = static_cast<WorkingNotice*>(data);
        self->_source = 0;
        self->appear();
        return G_SOURCE_REMOVE;
    };
    _source = g_timeout_add(Patience, onTime, this);
}

void WorkingNotice::end() {
    if (_source != 0) g_source_remove(std::exchange(_source, 0));
    if (_notice != nullptr) gtk_widget_unparent(std::exchange(_notice, nullptr));
}

void WorkingNotice::appear() {
    GtkWidget* spinner = gtk_spinner_new();
    gtk_widget_set_size_request(spinner, SpinnerSize, SpinnerSize);
    gtk_spinner_start(GTK_SPINNER(spinner));
    _notice = GTK_WIDGET(g_object_new(GTK_TYPE_BOX, "accessible-role", GTK_ACCESSIBLE_ROLE_STATUS, "spacing",
                                      10, "halign", GTK_ALIGN_CENTER, "valign", GTK_ALIGN_CENTER, nullptr));
    gtk_box_append(GTK_BOX(_notice), spinner);
    gtk_box_append(GTK_BOX(_notice), gtk_label_new(translated("Opening the page...")));
    gtk_widget_add_css_class(_notice, "osd");
    gtk_widget_add_css_class(_notice, "working");
    gtk_widget_set_can_target(_notice, FALSE); // pointer events go to the page underneath
    fillWidget(_container, _notice);
}

} // namespace platform
