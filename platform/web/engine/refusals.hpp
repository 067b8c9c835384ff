// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What pages ask for and do not get. Main thread only.
#pragma once

#include <webkit/webkit.h>

namespace platform {

/// Answers dialogs, permissions, file choosers, printing and the like of pages in `view` with no, and leaves
/// in the context menu only what stays inside the view.
void refuseWhatPagesAskFor(WebKitWebView* view);

/// Cancels every download of `session`.
void refuseDownloads(WebKitNetworkSession* session);

} // namespace platform
