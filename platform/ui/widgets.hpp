// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The toolkit's widgets of the views: for this room, and for the rooms of the platform that put widgets of
// their own on the screen, such as an effect's interface or the web engine's page. Main thread only.
#pragma once

#include "platform/ui/UIView.hpp"

#include <memory>

typedef struct _GtkWidget GtkWidget; // sources that use it include the toolkit's header

namespace platform {

/// Returns the widget of `view`, which owns it.
[[nodiscard]] GtkWidget* widgetOf(const UIView& view) noexcept;

/// Returns the view of `widget`, making it first where there is none. A floating reference is sunk; the view
/// keeps the widget, the widget does not keep the view. A kind of widget that has a class of its own (a
/// button) gets it.
[[nodiscard]] std::shared_ptr<UIView> viewWithWidget(GtkWidget* widget);

/// Returns the view that `widget` has; null when it has none.
[[nodiscard]] std::shared_ptr<UIView> viewOfWidget(GtkWidget* widget);

/// Adds `content`, which has no parent, to `container`, the widget of a plain view, in front of what is
/// there. It fills the container from now on, which owns it.
void fillWidget(GtkWidget* container, GtkWidget* content);

} // namespace platform
