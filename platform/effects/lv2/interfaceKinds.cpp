// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/effects/lv2/World.hpp"

#include <algorithm>
#include <lv2/ui/ui.h>

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
    {LV2_UI_PREFIX "external", "a window of its own"},
    {"http://kxstudio.sf.net/ns/lv2ext/external-ui#Widget", "a window of its own"},
};

} // namespace

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
