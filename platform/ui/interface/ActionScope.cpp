// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/interface/ActionScope.hpp"

#include "platform/foundation/product.hpp"
#include "platform/ui/interface/InterfaceDescription.hpp"

#include <new>
#include <string>

namespace platform {
namespace {

using WeakDescription = std::weak_ptr<InterfaceDescription>;

struct ActionScope {
    GtkBuilderCScope base;
    WeakDescription* description;
};

struct ActionScopeClass {
    GtkBuilderCScopeClass base;
};

gpointer parentClass = nullptr;

// The data of a signal handler: the name of an action, and the description that contains it.
struct Handler {
    WeakDescription description;
    std::string selector;
};

void callHandler(GClosure* closure, GValue*, guint count, const GValue* parameters, gpointer, gpointer) {
    const auto* handler = static_cast<const Handler*>(closure->data);
    const auto description = handler->description.lock();
    GObject* sender =
        count > 0 && G_VALUE_HOLDS_OBJECT(parameters) ? G_OBJECT(g_value_get_object(parameters)) : nullptr;
    if (description) {
        description->perform(handler->selector, GTK_IS_WIDGET(sender) ? GTK_WIDGET(sender) : nullptr);
    }
}

GClosure* createClosure(GtkBuilderScope* scope, GtkBuilder*, const char* name, GtkBuilderClosureFlags,
                        GObject*, GError**) {
    const WeakDescription& description = *reinterpret_cast<ActionScope*>(scope)->description;
    if (const auto owner = description.lock()) owner->noteAction(name);
    GClosure* closure = g_closure_new_simple(sizeof(GClosure), new Handler{description, name});
    g_closure_add_finalize_notifier(
        closure, closure->data, [](gpointer handler, GClosure*) { delete static_cast<Handler*>(handler); });
    g_closure_set_marshal(closure, callHandler);
    return closure;
}

void finalise(GObject* object) {
    delete reinterpret_cast<ActionScope*>(object)->description;
    G_OBJECT_CLASS(parentClass)->finalize(object);
}

void initialiseClass(gpointer klass, gpointer) {
    parentClass = g_type_class_peek_parent(klass);
    static_cast<GObjectClass*>(klass)->finalize = finalise;
}

void initialiseScope(gpointer interface, gpointer) {
    static_cast<GtkBuilderScopeInterface*>(interface)->create_closure =
        createClosure; // type lookup stays as in GtkBuilderCScope
}

GType actionScopeType() {
    static const GType type = [] {
        const GType made = g_type_register_static_simple(
            GTK_TYPE_BUILDER_CSCOPE, product::ActionScopeType, sizeof(ActionScopeClass), initialiseClass,
            sizeof(ActionScope), nullptr, static_cast<GTypeFlags>(0));
        const GInterfaceInfo info = {initialiseScope, nullptr, nullptr};
        g_type_add_interface_static(made, GTK_TYPE_BUILDER_SCOPE, &info);
        return made;
    }();
    return type;
}

} // namespace

GObjectRef<GtkBuilderScope> makeActionScope(const std::shared_ptr<InterfaceDescription>& description) {
    auto* scope = static_cast<ActionScope*>(g_object_new(actionScopeType(), nullptr));
    scope->description = new WeakDescription(description);
    return GObjectRef<GtkBuilderScope>::adopt(reinterpret_cast<GtkBuilderScope*>(scope));
}

} // namespace platform
