// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/ui/toolkit/appearance.hpp"

#include "platform/foundation/Bundle.hpp"
#include "platform/ui/GObjectRef.hpp"

#include <cstdlib>
#include <gtk/gtk.h>
#include <string>
#include <string_view>
#include <vector>

namespace platform {
namespace {

// The settings portal of the desktop: https://flatpak.github.io/xdg-desktop-portal, interface Settings.
constexpr const char* PortalName = "org.freedesktop.portal.Desktop";
constexpr const char* PortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* SettingsInterface = "org.freedesktop.portal.Settings";
constexpr const char* AppearanceNamespace = "org.freedesktop.appearance";
constexpr const char* ColorSchemeKey = "color-scheme";

enum class ColorScheme : guint32 { NoPreference = 0, Dark = 1, Light = 2 };

// The initial setting, which applies while the desktop has no preference.
gboolean& toolkitPrefersDark() {
    static gboolean prefersDark = FALSE;
    return prefersDark;
}

void apply(GVariant* value) {
    // The reply of "Read" wraps the value in one more variant than the signal does.
    GVariant* inner = g_variant_ref(value);
    while (g_variant_is_of_type(inner, G_VARIANT_TYPE_VARIANT) != FALSE) {
        GVariant* next = g_variant_get_variant(inner);
        g_variant_unref(inner);
        inner = next;
    }
    if (g_variant_is_of_type(inner, G_VARIANT_TYPE_UINT32) != FALSE) {
        const auto scheme = static_cast<ColorScheme>(g_variant_get_uint32(inner));
        const gboolean dark = scheme == ColorScheme::Dark    ? TRUE
                              : scheme == ColorScheme::Light ? FALSE
                                                             : toolkitPrefersDark();
        g_object_set(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", dark, nullptr);
    }
    g_variant_unref(inner);
}

void onRead(GObject* connection, GAsyncResult* result, gpointer) {
    GVariant* reply = g_dbus_connection_call_finish(G_DBUS_CONNECTION(connection), result, nullptr);
    if (reply == nullptr) return; // no portal, or one without this setting
    GVariant* value = g_variant_get_child_value(reply, 0);
    apply(value);
    g_variant_unref(value);
    g_variant_unref(reply);
}

void onChanged(GDBusConnection*, const char*, const char*, const char*, const char*, GVariant* parameters,
               gpointer) {
    const char* name = nullptr;
    GVariant* value = nullptr;
    g_variant_get(parameters, "(&s&s@v)", nullptr, &name, &value);
    if (std::string_view(name) == ColorSchemeKey) apply(value);
    g_variant_unref(value);
}

void onConnected(GObject*, GAsyncResult* result, gpointer) {
    GDBusConnection* bus =
        g_bus_get_finish(result, nullptr); // never released: the subscription lasts until the process ends
    if (bus == nullptr) return;
    g_dbus_connection_signal_subscribe(bus, PortalName, SettingsInterface, "SettingChanged", PortalPath,
                                       AppearanceNamespace, G_DBUS_SIGNAL_FLAGS_NONE, onChanged, nullptr,
                                       nullptr);
    g_dbus_connection_call(bus, PortalName, PortalPath, SettingsInterface, "Read",
                           g_variant_new("(ss)", AppearanceNamespace, ColorSchemeKey), G_VARIANT_TYPE("(v)"),
                           G_DBUS_CALL_FLAGS_NONE, -1, nullptr, onRead, nullptr);
}

} // namespace

void applyStyleSheet(const char* name) {
    const auto file = Bundle::main().URLForResource(name, "css");
    if (!file) return;
    const auto provider = GObjectRef<GtkCssProvider>::adopt(gtk_css_provider_new());
    gtk_css_provider_load_from_path(provider.get(), file->path().c_str());
    gtk_style_context_add_provider_for_display(gdk_display_get_default(), GTK_STYLE_PROVIDER(provider.get()),
                                               GTK_STYLE_PROVIDER_PRIORITY_APPLICATION);
}

void followColorScheme() {
    // Without an address GLib would start a session bus.
    if (std::getenv("DBUS_SESSION_BUS_ADDRESS") == nullptr) return;
    g_object_get(gtk_settings_get_default(), "gtk-application-prefer-dark-theme", &toolkitPrefersDark(),
                 nullptr);
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, onConnected, nullptr);
}

// Uses PNG files, because an SVG icon would load a renderer of 7 MB into the process.
void showIcon(GtkWindow* window, const char* name) {
    const auto resources = Bundle::main().resourceURL();
    GdkSurface* surface = gtk_native_get_surface(GTK_NATIVE(window));
    if (!resources || !GDK_IS_TOPLEVEL(surface)) return;
    std::vector<GObjectRef<GdkTexture>> textures;
    GList* list = nullptr;
    for (const char* size : {"48x48", "128x128"}) {
        // The icons are in share/icons, beside the directory of the resources.
        const std::string path = resources->path() + "/../icons/hicolor/" + size + "/apps/" + name + ".png";
        GdkTexture* texture = gdk_texture_new_from_filename(path.c_str(), nullptr);
        if (texture == nullptr) continue; // without any, the desktop shows its default icon
        textures.push_back(GObjectRef<GdkTexture>::adopt(texture));
        list = g_list_append(list, texture);
    }
    gdk_toplevel_set_icon_list(GDK_TOPLEVEL(surface), list);
    g_list_free(list);
}

} // namespace platform
