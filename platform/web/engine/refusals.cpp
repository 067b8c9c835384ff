// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/web/engine/refusals.hpp"

#include <algorithm>
#include <array>

namespace platform {
namespace {

// Closes a dialog at once: a question is answered with no, except whether to leave the page.
gboolean onDialog(WebKitWebView*, WebKitScriptDialog* dialog, gpointer) {
    const WebKitScriptDialogType type = webkit_script_dialog_get_dialog_type(dialog);
    if (type == WEBKIT_SCRIPT_DIALOG_CONFIRM) webkit_script_dialog_confirm_set_confirmed(dialog, FALSE);
    if (type == WEBKIT_SCRIPT_DIALOG_BEFORE_UNLOAD_CONFIRM) {
        webkit_script_dialog_confirm_set_confirmed(dialog, TRUE);
    }
    return TRUE;
}

gboolean onPermission(WebKitWebView*, WebKitPermissionRequest* request, gpointer) {
    webkit_permission_request_deny(request);
    return TRUE;
}

gboolean onFileChooser(WebKitWebView*, WebKitFileChooserRequest* request, gpointer) {
    webkit_file_chooser_request_cancel(request);
    return TRUE;
}

gboolean onColorChooser(WebKitWebView*, WebKitColorChooserRequest* request, gpointer) {
    webkit_color_chooser_request_cancel(request);
    return TRUE;
}

// Continues without a password, so that the server's error page is shown.
gboolean onAuthentication(WebKitWebView*, WebKitAuthenticationRequest* request, gpointer) {
    webkit_authentication_request_authenticate(request, nullptr);
    return TRUE;
}

// Ignores printing, notifications and full screen.
gboolean onOther() {
    return TRUE;
}

bool staysInside(WebKitContextMenuAction action) {
    constexpr std::array Inside = {
        WEBKIT_CONTEXT_MENU_ACTION_OPEN_LINK,  WEBKIT_CONTEXT_MENU_ACTION_COPY_LINK_TO_CLIPBOARD,
        WEBKIT_CONTEXT_MENU_ACTION_GO_BACK,    WEBKIT_CONTEXT_MENU_ACTION_GO_FORWARD,
        WEBKIT_CONTEXT_MENU_ACTION_STOP,       WEBKIT_CONTEXT_MENU_ACTION_RELOAD,
        WEBKIT_CONTEXT_MENU_ACTION_COPY,       WEBKIT_CONTEXT_MENU_ACTION_CUT,
        WEBKIT_CONTEXT_MENU_ACTION_PASTE,      WEBKIT_CONTEXT_MENU_ACTION_DELETE,
        WEBKIT_CONTEXT_MENU_ACTION_SELECT_ALL, WEBKIT_CONTEXT_MENU_ACTION_COPY_IMAGE_TO_CLIPBOARD};
    return std::find(Inside.begin(), Inside.end(), action) != Inside.end();
}

gboolean onContextMenu(WebKitWebView*, WebKitContextMenu* menu, WebKitHitTestResult*, gpointer) {
    GList* items = g_list_copy(webkit_context_menu_get_items(menu));
    for (GList* item = items; item != nullptr; item = item->next) {
        if (!staysInside(webkit_context_menu_item_get_stock_action(WEBKIT_CONTEXT_MENU_ITEM(item->data)))) {
            webkit_context_menu_remove(menu, WEBKIT_CONTEXT_MENU_ITEM(item->data));
        }
    }
    g_list_free(items);
    return webkit_context_menu_get_n_items(menu) == 0 ? TRUE : FALSE;
}

void onDownload(WebKitNetworkSession*, WebKitDownload* download, gpointer) {
    webkit_download_cancel(download);
}

} // namespace

void refuseWhatPagesAskFor(WebKitWebView* view) {
    const auto on = [view](const char* signal, GCallback handler) {
        g_signal_connect(view, signal, handler, nullptr);
    };
    on("script-dialog", G_CALLBACK(onDialog));
    on("permission-request", G_CALLBACK(onPermission));
    on("run-file-chooser", G_CALLBACK(onFileChooser));
    on("run-color-chooser", G_CALLBACK(onColorChooser));
    on("authenticate", G_CALLBACK(onAuthentication));
    on("context-menu", G_CALLBACK(onContextMenu));
    for (const char* signal : {"print", "show-notification", "enter-fullscreen"}) {
        on(signal, G_CALLBACK(onOther));
    }
}

void refuseDownloads(WebKitNetworkSession* session) {
    g_signal_connect(session, "download-started", G_CALLBACK(onDownload), nullptr);
}

} // namespace platform
