// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The toolkit's widget behind a view, for the platform's own code. Main thread only.
#pragma once

#include "platform/ui/UIView.hpp"

#include <gtk/gtk.h>

namespace platform {

/// Returns the widget of `view`; the view owns it.
[[nodiscard]] GtkWidget* widgetOf(const UIView& view) noexcept;

/// Makes the view of `widget`, or returns the one it has. A floating reference is sunk; the view keeps the
/// widget, the widget does not keep the view. A kind of widget that has a class of its own (a button) gets
/// it.
[[nodiscard]] std::shared_ptr<UIView> viewWithWidget(GtkWidget* widget);

/// Returns the view that `widget` has; absent when it has none.
[[nodiscard]] std::shared_ptr<UIView> viewOfWidget(GtkWidget* widget);

} // namespace platform
