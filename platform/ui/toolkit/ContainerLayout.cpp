// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/toolkit/ContainerLayout.hpp"

#include "platform/foundation/product.hpp"
#include "platform/ui/toolkit/ContainerWidget.hpp"
#include "platform/ui/toolkit/Placement.hpp"

#include <algorithm>
#include <cmath>

namespace platform {
namespace {

// The layout properties that an interface description can set for a child. The only one is "fill".
struct LayoutChildClass {
    GtkLayoutChildClass base;
};

Placement& placementOfChild(GObject* layoutChild) {
    return placementOf(gtk_layout_child_get_child_widget(GTK_LAYOUT_CHILD(layoutChild)));
}

void setFill(GObject* layoutChild, guint, const GValue* value, GParamSpec*) {
    placementOfChild(layoutChild).fills = g_value_get_boolean(value) != FALSE;
    gtk_layout_manager_layout_changed(gtk_layout_child_get_layout_manager(GTK_LAYOUT_CHILD(layoutChild)));
}

void getFill(GObject* layoutChild, guint, GValue* value, GParamSpec*) {
    g_value_set_boolean(value, placementOfChild(layoutChild).fills ? TRUE : FALSE);
}

void initialiseChildClass(gpointer klass, gpointer) {
    auto* objectClass = static_cast<GObjectClass*>(klass);
    objectClass->set_property = setFill;
    objectClass->get_property = getFill;
    g_object_class_install_property(
        objectClass, 1,
        g_param_spec_boolean("fill", nullptr, nullptr, FALSE,
                             static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS)));
}

GType layoutChildType() {
    static const GType type = g_type_register_static_simple(
        GTK_TYPE_LAYOUT_CHILD, product::ViewLayoutChildType, sizeof(LayoutChildClass), initialiseChildClass,
        sizeof(GtkLayoutChild), nullptr, static_cast<GTypeFlags>(0));
    return type;
}

struct LayoutClass {
    GtkLayoutManagerClass base;
};

GtkLayoutChild* createLayoutChild(GtkLayoutManager* manager, GtkWidget*, GtkWidget* child) {
    return GTK_LAYOUT_CHILD(
        g_object_new(layoutChildType(), "layout-manager", manager, "child-widget", child, nullptr));
}

template <class Function>
void forEachChild(GtkWidget* container, Function function) {
    for (GtkWidget* child = gtk_widget_get_first_child(container); child != nullptr;
         child = gtk_widget_get_next_sibling(child)) {
        function(child);
    }
}

void measure(GtkLayoutManager*, GtkWidget* container, GtkOrientation orientation, int, int* minimum,
             int* natural, int* minimumBaseline, int* naturalBaseline) {
    *minimum = 0;
    *natural = 0;
    *minimumBaseline = -1;
    *naturalBaseline = -1;
    forEachChild(container, [&](GtkWidget* child) {
        if (!placementOf(child).fills || gtk_widget_should_layout(child) == FALSE) return;
        int childMinimum = 0;
        int childNatural = 0;
        gtk_widget_measure(child, orientation, -1, &childMinimum, &childNatural, nullptr, nullptr);
        *minimum = std::max(*minimum, childMinimum);
        *natural = std::max(*natural, childNatural);
    });
}

// Rounds a coordinate to whole pixels. A frame can hold any number, even NaN.
int onGrid(double value) {
    constexpr double Far = 1 << 20;
    return std::isnan(value) ? 0 : static_cast<int>(std::lround(std::clamp(value, -Far, Far)));
}

// A child whose minimum size exceeds its frame is allocated its minimum size and clipped by the container.
void allocateChild(GtkWidget* child, const CGRect& frame) {
    GtkAllocation allocation{onGrid(frame.x), onGrid(frame.y), 0, 0};
    int minimum = 0;
    gtk_widget_measure(child, GTK_ORIENTATION_HORIZONTAL, -1, &minimum, nullptr, nullptr, nullptr);
    allocation.width = std::max(minimum, onGrid(frame.x + frame.width) - allocation.x);
    gtk_widget_measure(child, GTK_ORIENTATION_VERTICAL, allocation.width, &minimum, nullptr, nullptr,
                       nullptr);
    allocation.height = std::max(minimum, onGrid(frame.y + frame.height) - allocation.y);
    gtk_widget_size_allocate(child, &allocation, -1);
}

void allocate(GtkLayoutManager*, GtkWidget* container, int, int, int) {
    layOut(container, [container] {
        const ContainerSize size = sizeOf(container);
        updateFrames(container, size.width, size.height);
        forEachChild(container, [](GtkWidget* child) {
            if (gtk_widget_should_layout(child) != FALSE) allocateChild(child, placementOf(child).frame);
        });
    });
}

void initialiseClass(gpointer klass, gpointer) {
    auto* managerClass = static_cast<GtkLayoutManagerClass*>(klass);
    managerClass->layout_child_type = layoutChildType();
    managerClass->create_layout_child = createLayoutChild;
    managerClass->measure = measure;
    managerClass->allocate = allocate;
}

} // namespace

GType containerLayoutType() {
    static const GType type = g_type_register_static_simple(
        GTK_TYPE_LAYOUT_MANAGER, product::ViewLayoutType, sizeof(LayoutClass), initialiseClass,
        sizeof(GtkLayoutManager), nullptr, static_cast<GTypeFlags>(0));
    return type;
}

void updateFrames(GtkWidget* container, double width, double height) {
    const bool mirrored = gtk_widget_get_direction(container) == GTK_TEXT_DIR_RTL;
    forEachChild(container, [&](GtkWidget* child) {
        Placement& placement = placementOf(child);
        placement.frame = frameFor(placement, width, height, mirrored);
        // GTK lays out only visible widgets; this also updates the frames inside hidden containers.
        if (isContainerWidget(child)) updateFrames(child, placement.frame.width, placement.frame.height);
    });
}

} // namespace platform
