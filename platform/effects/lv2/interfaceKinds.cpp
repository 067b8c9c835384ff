// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/interfaceKinds.hpp"

#include "platform/effects/lv2/World.hpp"
#include "platform/effects/lv2/externalInterface.hpp"
#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/product.hpp"

#include <algorithm>
#include <lv2/ui/ui.h>
#include <unistd.h>

namespace platform::lv2 {
namespace {

struct Kind {
    const char* uri;
    const char* name;
};

constexpr Kind Kinds[] = {
    {LV2_UI__GtkUI, "GTK 2"},
    {LV2_UI__Gtk3UI, "GTK 3"},
    {LV2_UI_PREFIX "Gtk4UI", "GTK 4"},
    {LV2_UI__Qt4UI, "Qt 4"},
    {LV2_UI__Qt5UI, "Qt 5"},
    {LV2_UI_PREFIX "Qt6UI", "Qt 6"},
    {LV2_UI__CocoaUI, "Cocoa"},
    {LV2_UI__WindowsUI, "Windows"},
    {external::Class, "a window of its own"},
    {external::OldName, "a window of its own"},
};

constexpr std::pair<const char*, Interface::Kind> UsableKinds[] = {
    {LV2_UI__X11UI, Interface::Kind::X11},          {LV2_UI__GtkUI, Interface::Kind::Gtk2},
    {LV2_UI__Qt5UI, Interface::Kind::Qt5},          {external::Class, Interface::Kind::External},
    {external::OldName, Interface::Kind::External},
};

} // namespace

std::optional<Interface::Kind> World::kindOf(const LilvUI* interface) const {
    for (const auto& [name, kind] : UsableKinds) {
        if (lilv_ui_is_a(interface, uri(name).get())) return kind;
    }
    return std::nullopt;
}

const char* interfaceProgram(Interface::Kind kind) noexcept {
    switch (kind) {
    case Interface::Kind::Gtk2:
        return product::Gtk2InterfaceProgram;
    case Interface::Kind::Qt5:
        return product::Qt5InterfaceProgram;
    case Interface::Kind::X11:
    case Interface::Kind::External:
        break;
    }
    return product::EffectProgram;
}

bool hasInterfaceProgram(Interface::Kind kind) {
    const std::string path = Bundle::main().privateFrameworksPath() + "/" + interfaceProgram(kind);
    return ::access(path.c_str(), X_OK) == 0;
}

std::vector<std::string> World::otherInterfaceKinds() const {
    std::vector<std::string> names;
    LilvUIs* uis = lilv_plugin_get_uis(_plugin);
    if (uis == nullptr) return names;
    for (const Kind& kind : Kinds) {
        LILV_FOREACH(uis, i, uis)
        if (lilv_ui_is_a(lilv_uis_get(uis, i), uri(kind.uri).get()) &&
            std::find(names.begin(), names.end(), kind.name) == names.end()) {
            names.emplace_back(kind.name);
        }
    }
    lilv_uis_free(uis);
    return names;
}

} // namespace platform::lv2
