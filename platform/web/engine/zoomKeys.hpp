// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Keys that zoom a page. Main thread only.
#pragma once

#include <webkit/webkit.h>

namespace platform {

/// Lets Ctrl with +, - or 0 zoom `view`, unless it shows a PDF, whose viewer handles these keys itself.
void addZoomKeys(WebKitWebView* view);

} // namespace platform
