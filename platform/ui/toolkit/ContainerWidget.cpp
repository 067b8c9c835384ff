// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/toolkit/ContainerWidget.hpp"

#include "platform/foundation/product.hpp"
#include "platform/ui/toolkit/ContainerLayout.hpp"
#include "platform/ui/toolkit/Placement.hpp"

namespace platform {
namespace {

struct ContainerWidget {
    GtkWidget base;
    std::string* controllerClass;
    std::string* viewClass;
    std::function<void()>* layoutListener;
    bool isPlacing;
    bool isPlacingOutdated;
};

struct ContainerWidgetClass {
    GtkWidgetClass base;
};

enum Property : guint { ControllerClassProperty = 1, ViewClassProperty };

gpointer parentClass = nullptr;

ContainerWidget* selfOf(gpointer instance) {
    return static_cast<ContainerWidget*>(instance);
}

void initialise(GTypeInstance* instance, gpointer) {
    auto* self = reinterpret_cast<ContainerWidget*>(instance);
    self->controllerClass = new std::string;
    self->viewClass = new std::string;
    self->layoutListener = new std::function<void()>;
    gtk_widget_set_overflow(GTK_WIDGET(instance), GTK_OVERFLOW_HIDDEN);
}

void dispose(GObject* object) {
    while (GtkWidget* child = gtk_widget_get_first_child(GTK_WIDGET(object))) gtk_widget_unparent(child);
    G_OBJECT_CLASS(parentClass)->dispose(object);
}

void finalise(GObject* object) {
    delete selfOf(object)->controllerClass;
    delete selfOf(object)->viewClass;
    delete selfOf(object)->layoutListener;
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

std::string& classNameIn(GObject* object, guint property) {
    return property == ViewClassProperty ? *selfOf(object)->viewClass : *selfOf(object)->controllerClass;
}

void setProperty(GObject* object, guint property, const GValue* value, GParamSpec*) {
    const char* text = g_value_get_string(value);
    classNameIn(object, property) = text == nullptr ? "" : text;
}

void getProperty(GObject* object, guint property, GValue* value, GParamSpec*) {
    g_value_set_string(value, classNameIn(object, property).c_str());
}

void initialiseClass(gpointer klass, gpointer) {
    parentClass = g_type_class_peek_parent(klass);
    auto* objectClass = static_cast<GObjectClass*>(klass);
    objectClass->dispose = dispose;
    objectClass->finalize = finalise;
    objectClass->set_property = setProperty;
    objectClass->get_property = getProperty;
    constexpr auto Flags = static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS);
    g_object_class_install_property(
        objectClass, ControllerClassProperty,
        g_param_spec_string("controller-class", nullptr, nullptr, nullptr, Flags));
    g_object_class_install_property(objectClass, ViewClassProperty,
                                    g_param_spec_string("view-class", nullptr, nullptr, nullptr, Flags));
    auto* widgetClass = static_cast<GtkWidgetClass*>(klass);
    gtk_widget_class_set_layout_manager_type(widgetClass, containerLayoutType());
    gtk_widget_class_set_css_name(widgetClass, "view");
    gtk_widget_class_set_accessible_role(widgetClass, GTK_ACCESSIBLE_ROLE_GROUP);
}

// Returns whether the stored frame of `widget` is its actual size: true if its parent is a container, which
// updates the frame, or if it is in no window.
bool isSizedByFrame(GtkWidget* widget) {
    GtkWidget* parent = gtk_widget_get_parent(widget);
    return parent == nullptr ? !GTK_IS_ROOT(widget) : isContainerWidget(parent);
}

} // namespace

GType containerWidgetType() {
    static const GType type = g_type_register_static_simple(
        GTK_TYPE_WIDGET, product::ViewType, sizeof(ContainerWidgetClass), initialiseClass,
        sizeof(ContainerWidget), initialise, static_cast<GTypeFlags>(0));
    return type;
}

bool isContainerWidget(GtkWidget* widget) {
    return widget != nullptr && G_TYPE_CHECK_INSTANCE_TYPE(widget, containerWidgetType());
}

ContainerSize sizeOf(GtkWidget* widget) {
    if (isSizedByFrame(widget)) {
        const CGRect& frame = placementOf(widget).frame;
        return {frame.width, frame.height};
    }
    return {static_cast<double>(gtk_widget_get_width(widget)),
            static_cast<double>(gtk_widget_get_height(widget))};
}

void placeChildren(GtkWidget* container) {
    const ContainerSize size = sizeOf(container);
    updateFrames(container, size.width, size.height);
    queuePlacing(container);
}

void queuePlacing(GtkWidget* container) {
    if (selfOf(container)->isPlacing) {
        selfOf(container)->isPlacingOutdated = true; // the layout in progress places the children again
    } else {
        gtk_widget_queue_allocate(container);
    }
}

void setLayoutListener(GtkWidget* container, std::function<void()> listener) {
    *selfOf(container)->layoutListener = std::move(listener);
}

void layOut(GtkWidget* container, const std::function<void()>& place) {
    ContainerWidget* self = selfOf(container);
    self->isPlacing = true;
    self->isPlacingOutdated = false;
    place();
    if (const auto listener = *self->layoutListener) listener();
    // Views that the listener has moved are placed at once, without calling the listener again.
    if (self->isPlacingOutdated) place();
    self->isPlacing = false;
}

const std::string& controllerClassOf(GtkWidget* container) {
    return *selfOf(container)->controllerClass;
}

const std::string& viewClassOf(GtkWidget* container) {
    return *selfOf(container)->viewClass;
}

} // namespace platform
