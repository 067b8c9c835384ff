// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The toolkit's side of a view, for the classes of views. Main thread only.
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
    std::vector<std::shared_ptr<UIView>> kept; // the views added by addSubview
};

[[nodiscard]] inline UIView::ImplementationPointer makeImplementation(GtkWidget* widget) {
    return UIView::ImplementationPointer(std::make_unique<UIView::Implementation>(widget).release());
}

} // namespace platform
