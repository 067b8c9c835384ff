// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Where an effect meets the screen: its own interface if that can be shown, otherwise a plain list. Main
// thread only.
#include "platform/effects/view/EmbeddedInterface.hpp"
#include "platform/effects/view/genericView.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/translated.hpp"
#include "platform/ui/UIViewController.hpp"
#include "platform/ui/widgets.hpp"

#include <algorithm>
#include <gdk/x11/gdkx.h>
#include <gtk/gtk.h>

namespace platform::lv2 {
namespace {

std::shared_ptr<UIViewController> controllerOf(GtkWidget* widget) {
    auto controller = std::make_shared<UIViewController>();
    controller->setView(viewWithWidget(widget));
    return controller;
}

std::string formatted(const char* pattern, const std::string& argument) {
    char* text = g_strdup_printf(pattern, argument.c_str());
    std::string copy = text;
    g_free(text);
    return copy;
}

float scaleOf(GdkDisplay* display) {
    int scale = 1;
    GListModel* monitors = gdk_display_get_monitors(display);
    for (guint i = 0; i < g_list_model_get_n_items(monitors); ++i) {
        auto* monitor = static_cast<GdkMonitor*>(g_list_model_get_item(monitors, i));
        scale = std::max(scale, gdk_monitor_get_scale_factor(monitor));
        g_object_unref(monitor);
    }
    return static_cast<float>(scale);
}

// What the effect has to show.
struct Choice {
    std::optional<Interface> interface; // the first whose requirements can be met
    std::string reason;                 // for a person: why there is none although the effect has one
};

Choice chooseInterface(const Processor& processor) {
    Choice choice;
    const std::scoped_lock lock(processor.world()->mutex());
    for (Interface& interface : processor.world()->interfaces()) {
        const std::string lacked = lackedInterfaceFeature(interface);
        if (lacked.empty()) return {std::move(interface), ""};
        warn("The interface " + interface.uri + " requires the feature " + lacked +
             ", which this host does not have; a plain list replaces it.");
        choice.reason =
            formatted(translated("The effect’s own interface needs what is not here: %s."), lacked);
    }
    if (!choice.reason.empty()) return choice;
    const auto toolkits = processor.world()->otherInterfaceKinds();
    if (toolkits.empty()) return choice;
    std::string list;
    for (const std::string& toolkit : toolkits) list += (list.empty() ? "" : ", ") + toolkit;
    warn("The interface of \"" + processor.plugin().name + "\" is made for " + list +
         ", and only X11 ones can be shown; a plain list replaces it.");
    choice.reason =
        formatted(translated("The effect’s own interface is made for %s, which cannot be shown here."), list);
    return choice;
}

} // namespace

std::shared_ptr<UIViewController> makeEffectViewController(std::shared_ptr<AudioUnit> unit) {
    GdkDisplay* display = gdk_display_get_default();
    const std::string name = unit->lv2Processor().plugin().name;
    Choice choice = chooseInterface(unit->lv2Processor());
    if (choice.interface && !GDK_IS_X11_DISPLAY(display)) {
        choice = {std::nullopt, translated("The effect’s own interface needs an X11 display.")};
        warn("The interface of \"" + name + "\" needs an X11 display; a plain list replaces it.");
    }
    if (choice.interface && !unit->claimInterface()) {
        choice = {std::nullopt, translated("The effect’s own interface is already open.")};
    }
    if (!choice.interface) return controllerOf(makeGenericInterface(std::move(unit), name, choice.reason));

    tolerateInterfaceErrors(gdk_x11_display_get_xdisplay(display));
    auto socket = X11Socket::make(gdk_display_get_name(display));
    if (!socket) {
        unit->releaseInterface();
        warn("The X server does not take a connection for the interface of \"" + name + "\".");
        return nullptr;
    }
    if (!choice.interface->isResizable) socket->keepWantedSize();
    const auto takeSize = [socket = socket.get()](int width, int height) {
        socket->setWantedSize({width, height});
    };
    auto host = InterfaceHost::make(std::move(unit), *choice.interface,
                                    {socket->window(), scaleOf(display), takeSize});
    if (!host) {
        warn(host.error().localizedDescription());
        return nullptr;
    }
    return controllerOf(makeEmbeddedInterface(std::move(socket), std::move(host.value()), name));
}

} // namespace platform::lv2
