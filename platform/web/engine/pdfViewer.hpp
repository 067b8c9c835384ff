// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// WebKit's PDF viewer. It runs in a frame inside the page that WebKit creates for a PDF. Main thread only.
#pragma once

#include <webkit/webkit.h>

namespace platform {

/// Returns whether `uri` belongs to the viewer itself and not to a document.
[[nodiscard]] bool isPartOfPdfViewer(const char* uri);

/// Returns whether `view` shows a PDF.
[[nodiscard]] bool showsPdf(WebKitWebView* view);

/// Returns a content manager for a new view. It hides the viewer's controls for printing, saving, opening,
/// presenting and annotating, enables its search bar (Ctrl+F), and lets Ctrl+0 fit the page to the width, as
/// it is initially.
[[nodiscard]] WebKitUserContentManager* newPdfViewerManager();

/// Until `leavePdfViewer` is called: gives the viewer in `view` the keyboard focus each time it starts, and
/// calls `onDrawn` with `data` when it has drawn its first page or has reported an error.
void attendPdfViewer(WebKitWebView* view, void (*onDrawn)(gpointer data), gpointer data);
void leavePdfViewer(WebKitWebView* view);

} // namespace platform
