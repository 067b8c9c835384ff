// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The engine's own viewer of PDFs, a page in a frame inside the page that a PDF becomes. Main thread only.
#pragma once

#include <webkit/webkit.h>

namespace platform {

/// Returns whether `uri` belongs to the viewer and not to what it shows.
[[nodiscard]] bool isPartOfPdfViewer(const char* uri);

/// Returns whether the page of `view` is a PDF, which the viewer shows.
[[nodiscard]] bool showsPdf(WebKitWebView* view);

/// Returns the content manager of a new view. It removes from the viewer what leads out of the view
/// (printing, saving, opening, presenting) and the tools for annotations, opens its search bar with Ctrl and
/// F, and lets Ctrl and 0 fit the page into the width, as it is at first.
[[nodiscard]] WebKitUserContentManager* newPdfViewerManager();

/// Returns the viewer in `view` the keyboard each time it starts, and calls `onDrawn` with `data` when it has
/// drawn its first page, or has said why there is none, until `leavePdfViewer`.
void attendPdfViewer(WebKitWebView* view, void (*onDrawn)(gpointer data), gpointer data);
void leavePdfViewer(WebKitWebView* view);

} // namespace platform
