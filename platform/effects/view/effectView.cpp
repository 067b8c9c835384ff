// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Creates the view of an effect: its own interface if that can be shown, otherwise a generic list of
// parameters. Main thread only.
#include "platform/effects/lv2/interfaceKinds.hpp"
#include "platform/effects/lv2/requirements.hpp"
#include "platform/effects/view/ExternalPanel.hpp"
#include "platform/effects/view/InterfacePanel.hpp"
#include "platform/effects/view/X11Socket.hpp"
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

// The interface to show, or the reason why none can be shown.
struct Choice {
    std::optional<Interface>
        interface;      // the first one that can be run and whose required features are offered
    std::string reason; // for the user: why the effect's own interface cannot be shown; empty if it has none
};

Choice chooseInterface(const EffectProcessor& processor) {
    Choice choice;
    const std::scoped_lock lock(processor.world()->mutex());
    for (Interface& interface : processor.world()->interfaces()) {
        if (!hasInterfaceProgram(interface.kind)) continue;
        const std::string lacked = lackedInterfaceFeature(interface);
        if (lacked.empty()) return {std::move(interface), ""};
        warn("The interface " + interface.uri + " requires the feature " + lacked +
             ", which this host does not have; a plain list replaces it.");
        choice.reason = formatted(
            translated("The effect’s own interface needs a feature that is missing here: %s."), lacked);
    }
    if (!choice.reason.empty()) return choice;
    const auto toolkits = processor.world()->otherInterfaceKinds();
    if (toolkits.empty()) return choice;
    std::string list;
    for (const std::string& toolkit : toolkits) list += (list.empty() ? "" : ", ") + toolkit;
    warn("The interface of \"" + processor.plugin().name + "\" is made for " + list +
         ", for which no helper program is installed; a plain list replaces it.");
    choice.reason =
        formatted(translated("The effect’s own interface is made for %s, which cannot be shown here."), list);
    return choice;
}

} // namespace

void makeEffectViewController(std::shared_ptr<AudioUnit> unit,
                              std::function<void(std::shared_ptr<UIViewController>)> completion) {
    GdkDisplay* display = gdk_display_get_default();
    const std::string name = unit->lv2Processor().plugin().name;
    Choice choice = chooseInterface(unit->lv2Processor());
    if (choice.interface && !GDK_IS_X11_DISPLAY(display)) {
        choice = {std::nullopt, translated("The effect’s own interface needs an X11 display.")};
        warn("The interface of \"" + name + "\" needs an X11 display; a plain list replaces it.");
    }
    if (choice.interface && choice.interface->kind == Interface::Kind::External) {
        return completion(controllerOf(makeExternalPanel(std::move(unit), *choice.interface)));
    }
    if (choice.interface && !unit->claimInterface()) {
        choice = {std::nullopt, translated("The effect’s own interface is already open.")};
    }
    if (!choice.interface) {
        return completion(controllerOf(makeGenericInterface(std::move(unit), name, choice.reason)));
    }
    tolerateInterfaceErrors(gdk_x11_display_get_xdisplay(display));
    openInterface(std::move(unit), *choice.interface,
                  [completion = std::move(completion)](GtkWidget* widget) {
                      completion(widget == nullptr ? nullptr : controllerOf(widget));
                  });
}

} // namespace platform::lv2
