// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shared by the web page tests: a server with pages that the test defines, and access to WebKit's widgets and
// processes. Main thread only; the server runs in its loop.
#pragma once

#include "platform/ui/GObjectRef.hpp"
#include "tests/ui/toolkitFixture.hpp"

#include <libsoup/soup.h>
#include <webkit/webkit.h>

namespace platform::testing {

/// An HTTP server on loopback.
class PageServer : tonewright::test::Uncopied {
  public:
    struct Page {
        std::string body = {};
        std::string type = "text/html";
        std::string location = {}; // redirects to this location if not empty
        bool stays = false;        // never answered
        int status = 200;          // 401 asks for a password
    };

    PageServer() {
        soup_server_add_handler(_server, nullptr, onRequest, this, nullptr);
        soup_server_listen_local(_server, 0, SOUP_SERVER_LISTEN_IPV4_ONLY, nullptr);
        GSList* uris = soup_server_get_uris(_server);
        _port = g_uri_get_port(static_cast<GUri*>(uris->data));
        g_slist_free_full(uris, reinterpret_cast<GDestroyNotify>(g_uri_unref));
    }
    ~PageServer() {
        soup_server_disconnect(_server);
        g_object_unref(_server);
    }

    [[nodiscard]] std::string url(const std::string& path) const {
        return "http://127.0.0.1:" + std::to_string(_port) + path;
    }

    std::map<std::string, Page> pages; // by path; any other path is answered with 404
    std::vector<std::string> asked;    // the requested paths, except those of icons
    std::string cookies;               // the Cookie header of the last request

  private:
    static void onRequest(SoupServer*, SoupServerMessage* message, const char* path, GHashTable*,
                          gpointer data) {
        auto& self = *static_cast<PageServer*>(data);
        const auto found = self.pages.find(path);
        if (std::string_view(path) != "/favicon.ico") self.asked.emplace_back(path);
        const char* cookies =
            soup_message_headers_get_one(soup_server_message_get_request_headers(message), "Cookie");
        self.cookies = cookies == nullptr ? "" : cookies;
        if (found == self.pages.end()) return soup_server_message_set_status(message, 404, nullptr);
        const Page& page = found->second;
        if (page.stays) return soup_server_message_pause(message);
        if (!page.location.empty()) {
            return soup_server_message_set_redirect(message, 302, page.location.c_str());
        }
        soup_server_message_set_status(message, static_cast<guint>(page.status), nullptr);
        if (page.status == 401) {
            soup_message_headers_append(soup_server_message_get_response_headers(message), "WWW-Authenticate",
                                        "Basic realm=\"test\"");
        }
        soup_server_message_set_response(message, page.type.c_str(), SOUP_MEMORY_COPY, page.body.data(),
                                         page.body.size());
    }

    SoupServer* _server = soup_server_new(nullptr, nullptr);
    int _port = 0;
};

/// Returns a page whose script sets the title; tests read from the title what the script found.
inline std::string page(const std::string& script) {
    return "<!DOCTYPE html><html><head><title>begun</title></head><body><script>" + script +
           "</script></body></html>";
}

/// Returns the WebKit widget in a web view; null before the first load.
inline GtkWidget* engineOf(const UIView& view) {
    return gtk_widget_get_first_child(widgetOf(view));
}

/// Weak references to the objects that WebKit has made for a view: its widget, its context and its session.
class EngineObjects : tonewright::test::Uncopied {
  public:
    /// Refers to nothing if the view has not loaded anything yet.
    explicit EngineObjects(const UIView& view) {
        GtkWidget* engine = engineOf(view);
        if (!WEBKIT_IS_WEB_VIEW(engine)) return;
        g_weak_ref_set(&_references[0], engine);
        g_weak_ref_set(&_references[1], webkit_web_view_get_context(WEBKIT_WEB_VIEW(engine)));
        g_weak_ref_set(&_references[2], webkit_web_view_get_network_session(WEBKIT_WEB_VIEW(engine)));
    }
    ~EngineObjects() {
        for (GWeakRef& reference : _references) g_weak_ref_clear(&reference);
    }

    [[nodiscard]] bool areFreed() {
        return std::all_of(_references.begin(), _references.end(), [](GWeakRef& reference) {
            const auto object = GObjectRef<GObject>::adopt(static_cast<GObject*>(g_weak_ref_get(&reference)));
            return !object;
        });
    }

  private:
    std::array<GWeakRef, 3> _references{}; // zeros are a valid state
};

inline std::string titleOf(const UIView& view) {
    char* title = nullptr;
    if (engineOf(view) != nullptr) g_object_get(engineOf(view), "title", &title, nullptr);
    std::string text = title == nullptr ? "" : title;
    g_free(title);
    return text;
}

/// Returns the descendants of the process `parent` (by default of this process). WebKit's processes are
/// children of those that set up their sandboxes.
inline std::vector<int> childProcesses(const std::string& parent = "self") {
    std::vector<int> found;
    std::error_code ended; // ignored: a process that has ended has no children
    for (const auto& task : std::filesystem::directory_iterator("/proc/" + parent + "/task", ended)) {
        std::ifstream children(task.path() / "children");
        for (int child = 0; children >> child;) {
            found.push_back(child);
            const std::vector<int> below = childProcesses(std::to_string(child));
            found.insert(found.end(), below.begin(), below.end());
        }
    }
    return found;
}

} // namespace platform::testing
