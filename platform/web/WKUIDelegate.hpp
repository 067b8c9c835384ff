// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What a web view asks of the program around it. Main thread only.
#pragma once

#include "platform/web/WKNavigationDelegate.hpp"

#include <memory>

namespace platform {

struct WKWebViewConfiguration {};
struct WKWindowFeatures {};

class WKUIDelegate {
  public:
    virtual ~WKUIDelegate() = default;

    /// Creates the view for a page that asks for a window of its own. This program opens no such view:
    /// whatever is returned, the request is dropped.
    virtual std::shared_ptr<WKWebView> createWebViewWith(WKWebView&, const WKWebViewConfiguration&,
                                                         const WKNavigationAction&, const WKWindowFeatures&) {
        return nullptr;
    }
};

} // namespace platform
