// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/web/engine/EngineView.hpp"

#include "platform/foundation/translated.hpp"
#include "platform/web/engine/errorPage.hpp"
#include "platform/web/engine/pdfViewer.hpp"
#include "platform/web/engine/refusals.hpp"
#include "platform/web/engine/zoomKeys.hpp"

#include <utility>

namespace platform {
namespace {

// Each view has its own context. Destroying the context ends the processes that WebKit keeps ready for the
// next page.
GObjectRef<WebKitWebContext> makeContext() {
    auto context = GObjectRef<WebKitWebContext>::adopt(webkit_web_context_new());
    webkit_web_context_set_cache_model(context.get(), WEBKIT_CACHE_MODEL_DOCUMENT_VIEWER);
    return context;
}

GObjectRef<WebKitSettings> makeSettings() {
    auto settings = GObjectRef<WebKitSettings>::adopt(webkit_settings_new());
    g_object_set(settings.get(), "enable-page-cache", FALSE, "enable-webgl", FALSE, "enable-html5-database",
                 FALSE, "enable-html5-local-storage", FALSE, "hardware-acceleration-policy",
                 WEBKIT_HARDWARE_ACCELERATION_POLICY_NEVER, nullptr);
    return settings;
}

std::string textOf(const char* text) {
    return text == nullptr ? "" : text;
}

} // namespace

PendingDecisions::~PendingDecisions() {
    for (const auto& [decision, kept] : _waiting) webkit_policy_decision_ignore(decision);
}

void PendingDecisions::add(WebKitPolicyDecision* decision) {
    _waiting.emplace(decision, GObjectRef<WebKitPolicyDecision>::keep(decision));
}

void PendingDecisions::answer(WebKitPolicyDecision* decision, bool allow) {
    const auto node = _waiting.extract(decision);
    if (node.empty()) return; // already answered
    if (allow) {
        webkit_policy_decision_use(decision);
    } else {
        webkit_policy_decision_ignore(decision);
    }
}

EngineView::EngineView(WebClient& client)
    : _client(client)
    , _context(makeContext())
    , _session(GObjectRef<WebKitNetworkSession>::adopt(webkit_network_session_new_ephemeral())) {
    const auto settings = makeSettings();
    const auto manager = GObjectRef<WebKitUserContentManager>::adopt(newPdfViewerManager());
    _view = GObjectRef<WebKitWebView>::keep(WEBKIT_WEB_VIEW(
        g_object_new(WEBKIT_TYPE_WEB_VIEW, "web-context", _context.get(), "network-session", _session.get(),
                     "settings", settings.get(), "user-content-manager", manager.get(), nullptr)));
    gtk_accessible_update_property(GTK_ACCESSIBLE(widget()), GTK_ACCESSIBLE_PROPERTY_LABEL,
                                   translated("Page"), -1);
    refuseWhatPagesAskFor(_view.get());
    refuseDownloads(_session.get());
    addZoomKeys(_view.get());
    attendPdfViewer(
        _view.get(), +[](gpointer self) { static_cast<EngineView*>(self)->tellIsWorking(false); }, this);

    using Self = EngineView;
    const auto on = [this](const char* signal, GCallback handler) {
        g_signal_connect(_view.get(), signal, handler, this);
    };
    on("decide-policy",
       G_CALLBACK(+[](WebKitWebView*, WebKitPolicyDecision* decision, WebKitPolicyDecisionType type,
                      Self* self) { return self->decide(decision, type); }));
    on("create", G_CALLBACK(+[](WebKitWebView*, WebKitNavigationAction* action, Self* self) -> GtkWidget* {
           self->_client.windowWanted(
               textOf(webkit_uri_request_get_uri(webkit_navigation_action_get_request(action))));
           return nullptr;
       }));
    on("load-changed",
       G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent event, Self* self) { self->loadChanged(event); }));
    on("load-failed", G_CALLBACK(+[](WebKitWebView*, WebKitLoadEvent, const char* uri, const GError* error,
                                     Self* self) { return self->loadFailed(uri, *error); }));
    on("notify::estimated-load-progress",
       G_CALLBACK(+[](WebKitWebView*, GParamSpec*, Self* self) { self->_timeout.restart(); }));
    on("web-process-terminated", G_CALLBACK(+[](WebKitWebView*, WebKitWebProcessTerminationReason,
                                                Self* self) { self->processEnded(); }));
}

EngineView::~EngineView() {
    g_signal_handlers_disconnect_by_data(_view.get(), this);
    leavePdfViewer(_view.get());
    _pending.reset();
    // Also ends a page whose script loops for ever.
    webkit_web_view_terminate_web_process(_view.get());
}

void EngineView::load(const std::string& uri, double timeoutSeconds) {
    tellIsWorking(true);
    _timeout.set(timeoutSeconds, [this] {
        const std::string waiting = textOf(webkit_web_view_get_uri(_view.get()));
        webkit_web_view_stop_loading(_view.get());
        tell(translated("This page does not answer"), translated("There was no response in time."), waiting);
    });
    webkit_web_view_load_uri(_view.get(), uri.c_str());
}

void EngineView::loadHTML(const std::string& html, const std::string& baseURI) {
    tellIsWorking(true);
    const auto bytes = g_bytes_new(html.data(), html.size());
    webkit_web_view_load_bytes(_view.get(), bytes, "text/html", "UTF-8", baseURI.c_str());
    g_bytes_unref(bytes);
}

gboolean EngineView::decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type) {
    if (type == WEBKIT_POLICY_DECISION_TYPE_RESPONSE) {
        WebKitURIResponse* response =
            webkit_response_policy_decision_get_response(WEBKIT_RESPONSE_POLICY_DECISION(decision));
        const std::string uri = textOf(webkit_uri_response_get_uri(response));
        if (isPartOfPdfViewer(uri.c_str())) return FALSE; // WebKit's default is to continue
        _client.decideResponse(uri, answerTo(decision));
        return TRUE;
    }
    WebKitNavigationAction* action =
        webkit_navigation_policy_decision_get_navigation_action(WEBKIT_NAVIGATION_POLICY_DECISION(decision));
    const std::string uri = textOf(webkit_uri_request_get_uri(webkit_navigation_action_get_request(action)));
    if (isPartOfPdfViewer(uri.c_str())) return FALSE;
    _client.decideAction(uri, answerTo(decision));
    return TRUE;
}

WebAnswer EngineView::answerTo(WebKitPolicyDecision* decision) {
    _pending->add(decision);
    return [decision, pending = std::weak_ptr(_pending)](bool allow) {
        if (const auto waiting = pending.lock()) waiting->answer(decision, allow);
    };
}

void EngineView::loadChanged(WebKitLoadEvent event) {
    if (event == WEBKIT_LOAD_STARTED) {
        _timeout.start();
        _isNotice = std::exchange(_noticeIsStarting, false);
    } else if (event == WEBKIT_LOAD_COMMITTED) {
        _timeout.stop(); // the page is visible from now on
        if (!showsPdf(_view.get())) tellIsWorking(false);
    }
}

gboolean EngineView::loadFailed(const char* uri, const GError& error) {
    _timeout.stop();
    tellIsWorking(false);
    // The current page stays if a delegate or the user has stopped the navigation, or if another program has
    // to open the content.
    const bool isRefused = error.domain == WEBKIT_POLICY_ERROR &&
                           error.code != WEBKIT_POLICY_ERROR_CANNOT_USE_RESTRICTED_PORT &&
                           error.code != WEBKIT_POLICY_ERROR_FAILED;
    if (isRefused || error.domain == WEBKIT_MEDIA_ERROR ||
        g_error_matches(&error, WEBKIT_NETWORK_ERROR, WEBKIT_NETWORK_ERROR_CANCELLED) != FALSE) {
        return TRUE;
    }
    tell(translated("This page cannot be loaded"), error.message, textOf(uri));
    return TRUE;
}

void EngineView::processEnded() {
    _timeout.stop();
    tellIsWorking(false);
    if (_isNotice || _noticeIsStarting) return; // the error page stays on the screen
    tell(translated("This page stopped working"),
         translated("Exit leads back; the page can then be opened again."),
         textOf(webkit_web_view_get_uri(_view.get())));
}

void EngineView::tell(const std::string& title, const std::string& sentence, const std::string& uri) {
    _noticeIsStarting = true;
    webkit_web_view_load_alternate_html(_view.get(), errorPage(title, sentence, uri).c_str(),
                                        uri.empty() ? "about:blank" : uri.c_str(), nullptr);
}

void EngineView::tellIsWorking(bool isWorking) {
    if (_isWorking == isWorking) return;
    _isWorking = isWorking;
    _client.workingChanged(isWorking);
}

} // namespace platform

extern "C" __attribute__((visibility("default"))) platform::WebEngineView*
platformMakeWebEngineView(platform::WebClient& client) {
    return std::make_unique<platform::EngineView>(client).release();
}
