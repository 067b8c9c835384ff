// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Receives a web view's requests for new windows. Main thread only.
#pragma once

#include "platform/web/WKNavigationDelegate.hpp"

#include <memory>

namespace platform {

struct WKWebViewConfiguration {};
struct WKWindowFeatures {};

class WKUIDelegate {
  public:
    virtual ~WKUIDelegate() = default;

    /// Called when a page asks for a new window. No window is opened, whatever this function returns.
    virtual std::shared_ptr<WKWebView> createWebViewWith(WKWebView&, const WKWebViewConfiguration&,
                                                         const WKNavigationAction&, const WKWindowFeatures&) {
        return nullptr;
    }
};

} // namespace platform
