// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The keys that enlarge and shrink a page. Main thread only.
#pragma once

#include <webkit/webkit.h>

namespace platform {

/// Lets Ctrl and +, - or 0 zoom `view`, unless it shows a PDF, whose viewer has these keys itself.
void addZoomKeys(WebKitWebView* view);

} // namespace platform
