// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Access to the GTK widgets of views, for platform/ui and for the platform folders that show widgets of their
// own (the interface of an effect, a web page). Main thread only.
#pragma once

#include "platform/ui/UIView.hpp"

#include <memory>

typedef struct _GtkWidget GtkWidget; // sources that use the type include GTK's header

namespace platform {

/// Returns the widget of `view`, which owns it.
[[nodiscard]] GtkWidget* widgetOf(const UIView& view) noexcept;

/// Returns the view of `widget`, creating it if there is none. The class of the new view depends on the kind
/// of widget: a GtkButton gets a UIButton. The view owns a reference to the widget and sinks a floating one;
/// the widget owns none to the view.
[[nodiscard]] std::shared_ptr<UIView> viewWithWidget(GtkWidget* widget);

/// Returns the view of `widget`, or null if it has none.
[[nodiscard]] std::shared_ptr<UIView> viewOfWidget(GtkWidget* widget);

/// Adds `content`, which must have no parent, to `container`, the widget of a plain view, in front of its
/// other children. `container` owns `content`, which fills it from now on.
void fillWidget(GtkWidget* container, GtkWidget* content);

} // namespace platform
