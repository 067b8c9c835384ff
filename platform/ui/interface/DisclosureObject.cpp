// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/interface/DisclosureObject.hpp"

#include "platform/foundation/product.hpp"

#include <gtk/gtk.h>

namespace platform {
namespace {

struct DisclosureObject {
    GObject base;
    GtkWidget* button; // strong references, both
    GtkWidget* view;
};

struct DisclosureObjectClass {
    GObjectClass base;
};

enum Property : guint { ButtonProperty = 1, ViewProperty };

gpointer parentClass = nullptr;

DisclosureObject* selfOf(GObject* object) {
    return reinterpret_cast<DisclosureObject*>(object);
}

GtkWidget*& widgetOf(GObject* object, guint property) {
    return property == ButtonProperty ? selfOf(object)->button : selfOf(object)->view;
}

void tellState(const DisclosureObject& self) {
    if (self.button == nullptr || self.view == nullptr) return;
    gtk_accessible_update_state(GTK_ACCESSIBLE(self.button), GTK_ACCESSIBLE_STATE_EXPANDED,
                                gtk_widget_get_visible(self.view), -1);
}

void onVisible(GtkWidget*, GParamSpec*, gpointer self) {
    tellState(*static_cast<DisclosureObject*>(self));
}

void dispose(GObject* object) {
    g_clear_object(&selfOf(object)->button);
    g_clear_object(&selfOf(object)->view);
    G_OBJECT_CLASS(parentClass)->dispose(object);
}

void setProperty(GObject* object, guint property, const GValue* value, GParamSpec*) {
    widgetOf(object, property) = static_cast<GtkWidget*>(g_value_dup_object(value));
    if (property == ViewProperty && selfOf(object)->view != nullptr) {
        g_signal_connect_object(selfOf(object)->view, "notify::visible", G_CALLBACK(onVisible), object,
                                static_cast<GConnectFlags>(0));
    }
    tellState(*selfOf(object));
}

void getProperty(GObject* object, guint property, GValue* value, GParamSpec*) {
    g_value_set_object(value, widgetOf(object, property));
}

void initialiseClass(gpointer klass, gpointer) {
    parentClass = g_type_class_peek_parent(klass);
    auto* objectClass = static_cast<GObjectClass*>(klass);
    objectClass->dispose = dispose;
    objectClass->set_property = setProperty;
    objectClass->get_property = getProperty;
    constexpr auto Flags =
        static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_CONSTRUCT_ONLY | G_PARAM_STATIC_STRINGS);
    g_object_class_install_property(objectClass, ButtonProperty,
                                    g_param_spec_object("button", nullptr, nullptr, GTK_TYPE_WIDGET, Flags));
    g_object_class_install_property(objectClass, ViewProperty,
                                    g_param_spec_object("view", nullptr, nullptr, GTK_TYPE_WIDGET, Flags));
}

} // namespace

GType disclosureObjectType() {
    static const GType type = g_type_register_static_simple(
        G_TYPE_OBJECT, product::DisclosureType, sizeof(DisclosureObjectClass), initialiseClass,
        sizeof(DisclosureObject), nullptr, static_cast<GTypeFlags>(0));
    return type;
}

} // namespace platform
