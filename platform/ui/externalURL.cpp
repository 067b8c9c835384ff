// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// `xdg-open` is tried first: it exists on every desktop, asks no questions, and inside a sandbox it calls the
// portal. Nothing here blocks the main thread: the program is started on the global queue, and the portal is
// called asynchronously.
#include "platform/ui/externalURL.hpp"

#include "platform/dispatch/DispatchQueue.hpp"
#include "platform/foundation/console.hpp"

#include <array>
#include <cstdlib>
#include <gio/gio.h>
#include <memory>

namespace platform {
namespace {

// https://flatpak.github.io/xdg-desktop-portal, interface OpenURI.
constexpr const char* PortalName = "org.freedesktop.portal.Desktop";
constexpr const char* PortalPath = "/org/freedesktop/portal/desktop";
constexpr const char* OpenInterface = "org.freedesktop.portal.OpenURI";

struct Request {
    std::string text; // of the URL
    std::function<void(bool)> completion;

    void end(bool success) const {
        if (!success) warn("The page " + text + " could not be opened in a browser.");
        if (completion) {
            DispatchQueue::main().async([completion = completion, success] { completion(success); });
        }
    }
};

std::unique_ptr<Request> take(gpointer data) {
    return std::unique_ptr<Request>(static_cast<Request*>(data));
}

void onPortalAnswered(GObject* bus, GAsyncResult* result, gpointer data) {
    GVariant* reply = g_dbus_connection_call_finish(G_DBUS_CONNECTION(bus), result, nullptr);
    take(data)->end(reply != nullptr);
    if (reply != nullptr) g_variant_unref(reply);
}

void onConnected(GObject*, GAsyncResult* result, gpointer data) {
    GDBusConnection* bus = g_bus_get_finish(result, nullptr);
    if (bus == nullptr) return take(data)->end(false);
    g_dbus_connection_call(bus, PortalName, PortalPath, OpenInterface, "OpenURI",
                           g_variant_new("(ssa{sv})", "", static_cast<Request*>(data)->text.c_str(), nullptr),
                           G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE, -1, nullptr, onPortalAnswered,
                           data);
    g_object_unref(bus);
}

void openByPortal(std::unique_ptr<Request> request) {
    // Without an address GLib would start a session bus.
    if (std::getenv("DBUS_SESSION_BUS_ADDRESS") == nullptr) return request->end(false);
    g_bus_get(G_BUS_TYPE_SESSION, nullptr, onConnected, request.release());
}

void onProgramEnded(GPid program, gint status, gpointer data) {
    g_spawn_close_pid(program);
    const auto request = take(data);
    if (g_spawn_check_wait_status(status, nullptr) == FALSE) Request{request->text, nullptr}.end(false);
}

// Starts xdg-open, which may run for as long as the browser. Returns false if it cannot be started.
bool openByProgram(const Request& request) {
    std::string name = "xdg-open";
    std::string text = request.text;
    std::array<char*, 3> arguments = {name.data(), text.data(), nullptr};
    GPid program = 0;
    const auto flags = static_cast<GSpawnFlags>(G_SPAWN_SEARCH_PATH | G_SPAWN_DO_NOT_REAP_CHILD |
                                                G_SPAWN_STDOUT_TO_DEV_NULL);
    if (g_spawn_async(nullptr, arguments.data(), nullptr, flags, nullptr, nullptr, &program, nullptr) ==
        FALSE) {
        return false;
    }
    g_child_watch_add(program, onProgramEnded, new Request{request.text, nullptr});
    return true;
}

} // namespace

void openOnDesktop(const URL& url, std::function<void(bool)> completion) {
    DispatchQueue::global().async([request = Request{url.absoluteString(), std::move(completion)}]() mutable {
        if (openByProgram(request)) return request.end(true);
        DispatchQueue::main().async(
            [request = std::move(request)] { openByPortal(std::make_unique<Request>(request)); });
    });
}

} // namespace platform
