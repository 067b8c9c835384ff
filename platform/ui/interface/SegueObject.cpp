// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/interface/SegueObject.hpp"

#include "platform/foundation/product.hpp"

namespace platform {
namespace {

struct SegueObject {
    GObject base;
    char* destination;
};

struct SegueObjectClass {
    GObjectClass base;
};

enum Property : guint { DestinationProperty = 1 };

gpointer parentClass = nullptr;

SegueObject* selfOf(GObject* object) {
    return reinterpret_cast<SegueObject*>(object);
}

void finalise(GObject* object) {
    g_free(selfOf(object)->destination);
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void setProperty(GObject* object, guint, const GValue* value, GParamSpec*) {
    g_free(selfOf(object)->destination);
    selfOf(object)->destination = g_value_dup_string(value);
}

void getProperty(GObject* object, guint, GValue* value, GParamSpec*) {
    g_value_set_string(value, selfOf(object)->destination);
}

void initialiseClass(gpointer klass, gpointer) {
    parentClass = g_type_class_peek_parent(klass);
    auto* objectClass = static_cast<GObjectClass*>(klass);
    objectClass->finalize = finalise;
    objectClass->set_property = setProperty;
    objectClass->get_property = getProperty;
    g_object_class_install_property(
        objectClass, DestinationProperty,
        g_param_spec_string("destination", nullptr, nullptr, nullptr,
                            static_cast<GParamFlags>(G_PARAM_READWRITE | G_PARAM_STATIC_STRINGS)));
}

} // namespace

GType segueObjectType() {
    static const GType type = g_type_register_static_simple(
        G_TYPE_OBJECT, product::SegueType, sizeof(SegueObjectClass), initialiseClass, sizeof(SegueObject),
        nullptr, static_cast<GTypeFlags>(0));
    return type;
}

bool isSegueObject(GObject* object) {
    return G_TYPE_CHECK_INSTANCE_TYPE(object, segueObjectType());
}

std::string destinationOf(GObject* segue) {
    const char* destination = selfOf(segue)->destination;
    return destination == nullptr ? "" : destination;
}

} // namespace platform
