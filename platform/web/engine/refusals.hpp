// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Refuses requests of web pages. Main thread only.
#pragma once

#include <webkit/webkit.h>

namespace platform {

/// Refuses dialogs, permissions, file choosers, printing and similar requests of pages in `view`, and removes
/// from the context menu all entries that would leave the view.
void refuseWhatPagesAskFor(WebKitWebView* view);

/// Cancels every download of `session`.
void refuseDownloads(WebKitNetworkSession* session);

} // namespace platform
