// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Accessible names of drop-downs, which GTK leaves empty. Main thread only.
#pragma once

#include <gtk/gtk.h>
#include <string>

namespace platform {

/// Sets the names of a drop-down: of its button, which has the focus, and of its list. The button's name
/// includes the selected item `choice`, because screen readers read only the button.
void nameChoiceBox(GtkWidget* widget, const std::string& name, const std::string& choice);

/// Names the items of a drop-down's list each time the list is opened.
void nameItemsWhenOpened(GtkWidget* widget);

} // namespace platform
