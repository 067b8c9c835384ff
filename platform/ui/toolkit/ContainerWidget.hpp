// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The GTK widget of a plain UIView. Interface descriptions use it under the name product::ViewType. Main
// thread only.
//
// In an interface description, <layout><property name="fill">1</property></layout> makes a child fill its
// container. Only such children count for the container's minimum and natural size. The property
// "controller-class" of a screen's root view is the name of the controller class; the property "view-class"
// is the name of a registered view class.
#pragma once

#include <functional>
#include <gtk/gtk.h>
#include <string>

namespace platform {

/// Returns the GObject type of the widget. Registers the type at the first call.
[[nodiscard]] GType containerWidgetType();

[[nodiscard]] bool isContainerWidget(GtkWidget* widget);

struct ContainerSize {
    double width;
    double height;
};
/// Returns the size in points that `widget` has for its children. It is correct even while the widget is
/// hidden.
[[nodiscard]] ContainerSize sizeOf(GtkWidget* widget);

/// Sets the frames of the children of `container` now, and their GTK allocations before the next frame is
/// drawn.
void placeChildren(GtkWidget* container);

/// Sets the frames of the children of `container` and their GTK allocations before the next frame is drawn.
void queuePlacing(GtkWidget* container);

/// Sets the function that is called after each layout of `container`.
void setLayoutListener(GtkWidget* container, std::function<void()> listener);

/// Returns the property "controller-class", or an empty string if it is not set.
[[nodiscard]] const std::string& controllerClassOf(GtkWidget* container);

/// Returns the property "view-class", or an empty string if it is not set.
[[nodiscard]] const std::string& viewClassOf(GtkWidget* container);

} // namespace platform
