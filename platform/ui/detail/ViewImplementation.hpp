// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The GTK side of a view, for the view classes. Main thread only.
#pragma once

#include "platform/ui/GObjectRef.hpp"
#include "platform/ui/UIView.hpp"

#include <gtk/gtk.h>
#include <memory>
#include <vector>

namespace platform {

class UIView::Implementation {
  public:
    explicit Implementation(GtkWidget* ownWidget)
        : widget(GObjectRef<GtkWidget>::keep(ownWidget)) {}

    GObjectRef<GtkWidget> widget;
    std::vector<std::shared_ptr<UIView>> kept; // strong references to the views added with addSubview
};

[[nodiscard]] inline UIView::ImplementationPointer makeImplementation(GtkWidget* widget) {
    return UIView::ImplementationPointer(std::make_unique<UIView::Implementation>(widget).release());
}

} // namespace platform
