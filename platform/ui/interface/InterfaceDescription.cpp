// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/interface/InterfaceDescription.hpp"

#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/translated.hpp"
#include "platform/ui/UIWindow.hpp"
#include "platform/ui/interface/ActionScope.hpp"
#include "platform/ui/interface/DisclosureObject.hpp"
#include "platform/ui/interface/SegueObject.hpp"
#include "platform/ui/toolkit/ContainerWidget.hpp"
#include "platform/ui/toolkit/DrawingWidget.hpp"
#include "platform/ui/widgets.hpp"

#include <gtk/gtk.h>

namespace platform {

std::shared_ptr<InterfaceDescription> InterfaceDescription::load(const std::string& name,
                                                                 const Bundle& bundle) {
    const auto file = bundle.URLForResource(name, "ui");
    if (!file) {
        warn("The interface description \"" + name + ".ui\" is not among the resources.");
        return nullptr;
    }
    (void)containerWidgetType(); // registers the types that the description names
    (void)segueObjectType();
    (void)disclosureObjectType();
    (void)drawingWidgetType();
    auto description = std::make_shared<InterfaceDescription>();
    description->_name = name;
    description->_builder = GObjectRef<GtkBuilder>::adopt(gtk_builder_new());
    gtk_builder_set_translation_domain(description->_builder.get(), TextDomain);
    gtk_builder_set_scope(description->_builder.get(), makeActionScope(description).get());
    GError* error = nullptr;
    if (gtk_builder_add_from_file(description->_builder.get(), file->path().c_str(), &error) == FALSE) {
        warn("The interface description cannot be read: " + std::string(error->message));
        g_error_free(error);
        return nullptr;
    }
    return description;
}

std::string InterfaceDescription::controllerClass() const {
    GObject* root = gtk_builder_get_object(_builder.get(), "view");
    return root != nullptr && GTK_IS_WIDGET(root) && isContainerWidget(GTK_WIDGET(root))
               ? controllerClassOf(GTK_WIDGET(root))
               : std::string();
}

std::shared_ptr<UIView> InterfaceDescription::view() const {
    return viewNamed("view");
}

std::shared_ptr<UIWindow> InterfaceDescription::window() const {
    return std::dynamic_pointer_cast<UIWindow>(viewNamed("window"));
}

std::shared_ptr<UIView> InterfaceDescription::viewNamed(const char* name) const {
    GObject* object = gtk_builder_get_object(_builder.get(), name);
    return object != nullptr && GTK_IS_WIDGET(object) ? viewWithWidget(GTK_WIDGET(object)) : nullptr;
}

void InterfaceDescription::connect(const std::shared_ptr<UIResponder>& owner,
                                   const InterfaceConnections& connections, Perform performer) {
    _owner = owner;
    _perform = performer;
    for (const auto& [name, assign] : connections.outlets()) {
        auto object = viewNamed(name.c_str());
        if (!object) continue;
        if (assign(object)) {
            _kept.push_back(std::move(object));
        } else {
            warn("The object \"" + name + "\" in \"" + _name + ".ui\" has the wrong class for its outlet.");
        }
    }
    for (const auto& selector : _actions) {
        if (connections.findAction(selector) == nullptr && !destinationOfSegue(selector)) {
            warn("The action \"" + selector + "\" in \"" + _name + ".ui\" is unknown to its controller.");
        }
    }
}

std::optional<std::string> InterfaceDescription::destinationOfSegue(const std::string& identifier) const {
    GObject* object = gtk_builder_get_object(_builder.get(), identifier.c_str());
    return object != nullptr && isSegueObject(object) ? std::optional(destinationOf(object)) : std::nullopt;
}

void InterfaceDescription::perform(const std::string& selector, GtkWidget* sender) {
    const auto owner = _owner.lock();
    if (owner) _perform(*owner, selector, sender == nullptr ? nullptr : viewWithWidget(sender));
}

} // namespace platform
