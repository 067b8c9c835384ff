// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The widget of a plain UIView, product::ViewType in interface descriptions, and the layout manager that
// places its children. Main thread only.
//
// In an interface description a child fills its container with <layout><property
// name="fill">1</property></layout>; only such children count for the container's minimum and natural size.
// The root of a screen names the class of its controller in the property "controller-class"; a view of a
// class of its own names that class in the property "view-class".
#pragma once

#include <functional>
#include <gtk/gtk.h>
#include <string>

namespace platform {

/// Returns the type, registering it first.
[[nodiscard]] GType containerWidgetType();

[[nodiscard]] bool isContainerWidget(GtkWidget* widget);

struct ContainerSize {
    double width;
    double height;
};
/// Returns the size, in points, of a view, in which it lays its children out; also correct while it is
/// hidden.
[[nodiscard]] ContainerSize sizeOf(GtkWidget* widget);

/// Sets the frames of the children of `container` now and their allocations with the next frame of the
/// screen.
void placeChildren(GtkWidget* container);

/// Sets the allocations of the children of `container`, and their frames, with the next frame of the screen.
void queuePlacing(GtkWidget* container);

/// Sets `listener`, which is called after each layout of `container`.
void setLayoutListener(GtkWidget* container, std::function<void()> listener);

/// Returns the controller's class that the interface description names; empty if it names none.
[[nodiscard]] const std::string& controllerClassOf(GtkWidget* container);

/// Returns the view's class that the interface description names; empty if it names none.
[[nodiscard]] const std::string& viewClassOf(GtkWidget* container);

} // namespace platform
