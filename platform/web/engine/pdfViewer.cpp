// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/web/engine/pdfViewer.hpp"

#include <cstring>

namespace platform {
namespace {

constexpr const char* Scheme = "webkit-pdfjs-viewer:";
constexpr const char* Place = "webkit-pdfjs-viewer://*/*";
constexpr const char* Messages = "pdfViewer";

// Hides controls that would leave the view, and editing tools, whose results would be lost when the view
// closes.
constexpr const char* Style = "#print, #download, #openFile, #secondaryPrint, #secondaryDownload, "
                              "#secondaryOpenFile, #presentationMode,"
                              "#viewBookmark, #viewBookmarkSeparator, #editorModeButtons, "
                              "#editorModeSeparator { display: none !important }";

// Runs before the viewer's own script and therefore receives key events first. WebKit's additions to the
// viewer disable its search bar, because they expect the program to have one. They do that before
// "pagesinit", so this script enables the search bar afterwards.
constexpr const char* Script = R"((() => {
    const tell = what => window.webkit.messageHandlers.pdfViewer.postMessage(what);
    document.addEventListener('webviewerloaded', () => {
        const viewer = PDFViewerApplication;
        PDFViewerApplicationOptions.set('disablePreferences', true);
        PDFViewerApplicationOptions.set('annotationEditorMode', -1);
        viewer.initializedPromise.then(() => {
            tell('begins');
            viewer.eventBus.on('pagesinit', () => {
                Object.defineProperty(viewer, 'supportsIntegratedFind', { value: false, configurable: true });
                document.getElementById('viewFind').classList.remove('hidden');
                viewer.pdfViewer.focus();
            });
            for (const event of ['pagerendered', 'documenterror'])
                viewer.eventBus.on(event, () => tell('drawn'), { once: true });
        });
    });
    window.addEventListener('keydown', event => {
        if (!event.ctrlKey && !event.metaKey) return;
        const key = event.key.toLowerCase();
        if (key === '0' && !event.altKey)
            PDFViewerApplication.pdfViewer.currentScaleValue = 'page-width';
        else if (!['o', 'p', 's'].includes(key))
            return;
        event.preventDefault();
        event.stopImmediatePropagation();
    }, true);
})())";

struct Attendance {
    WebKitWebView* view;
    void (*onDrawn)(gpointer data);
    gpointer data;
};

void onMessage(WebKitUserContentManager*, JSCValue* value, gpointer data) {
    const auto* attendance = static_cast<Attendance*>(data);
    char* message = jsc_value_to_string(value);
    const bool begins = std::strcmp(message, "begins") == 0;
    g_free(message);
    if (!begins) return attendance->onDrawn(attendance->data);
    // Only the page around the viewer can give it the keyboard focus. Until then, a zoom key would zoom that
    // page instead.
    webkit_web_view_evaluate_javascript(attendance->view, "document.querySelector('iframe')?.focus()", -1,
                                        nullptr, nullptr, nullptr, nullptr, nullptr);
    webkit_web_view_set_zoom_level(attendance->view, 1);
}

} // namespace

bool isPartOfPdfViewer(const char* uri) {
    return uri != nullptr && g_str_has_prefix(uri, Scheme) != FALSE;
}

bool showsPdf(WebKitWebView* view) {
    WebKitWebResource* resource = webkit_web_view_get_main_resource(view);
    WebKitURIResponse* response = resource == nullptr ? nullptr : webkit_web_resource_get_response(resource);
    return response != nullptr &&
           g_strcmp0(webkit_uri_response_get_mime_type(response), "application/pdf") == 0;
}

WebKitUserContentManager* newPdfViewerManager() {
    const char* const places[] = {Place, nullptr}; // NOLINT(modernize-avoid-c-arrays): WebKit's interface
    WebKitUserContentManager* manager = webkit_user_content_manager_new();
    WebKitUserStyleSheet* style = webkit_user_style_sheet_new(Style, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                                                              WEBKIT_USER_STYLE_LEVEL_USER, places, nullptr);
    webkit_user_content_manager_add_style_sheet(manager, style);
    webkit_user_style_sheet_unref(style);
    WebKitUserScript* script =
        webkit_user_script_new(Script, WEBKIT_USER_CONTENT_INJECT_ALL_FRAMES,
                               WEBKIT_USER_SCRIPT_INJECT_AT_DOCUMENT_START, places, nullptr);
    webkit_user_content_manager_add_script(manager, script);
    webkit_user_script_unref(script);
    webkit_user_content_manager_register_script_message_handler(manager, Messages, nullptr);
    return manager;
}

void attendPdfViewer(WebKitWebView* view, void (*onDrawn)(gpointer data), gpointer data) {
    const auto free = +[](gpointer attendance, GClosure*) { delete static_cast<Attendance*>(attendance); };
    g_signal_connect_data(webkit_web_view_get_user_content_manager(view),
                          "script-message-received::pdfViewer", G_CALLBACK(onMessage),
                          new Attendance{view, onDrawn, data}, free, GConnectFlags(0));
}

void leavePdfViewer(WebKitWebView* view) {
    WebKitUserContentManager* manager = webkit_web_view_get_user_content_manager(view);
    g_signal_handlers_disconnect_matched(manager, G_SIGNAL_MATCH_FUNC, 0, 0, nullptr,
                                         reinterpret_cast<gpointer>(onMessage), nullptr);
}

} // namespace platform
