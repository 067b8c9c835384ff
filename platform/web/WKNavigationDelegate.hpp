// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Decides whether a web view may navigate, and whether it may show a response. Main thread only.
#pragma once

#include "platform/foundation/URL.hpp"

#include <cstdint>
#include <functional>
#include <optional>

namespace platform {

class WKWebView;

enum class WKNavigationActionPolicy : std::uint8_t { Cancel, Allow };
enum class WKNavigationResponsePolicy : std::uint8_t { Cancel, Allow };

/// A navigation that is about to happen: a load, a redirect, a link, a frame or a fragment.
struct WKNavigationAction {
    struct Request {
        std::optional<URL> url; // empty if the request has none
    };
    Request request;
};

/// A response that is about to be shown, once for each document.
struct WKNavigationResponse {
    struct Response {
        std::optional<URL> url;
    };
    Response response;
};

/// Each decision handler may be called at once or later, on the main thread. Only its first call has an
/// effect. The navigation waits until the handler is called, even if the handler is destroyed without a call.
class WKNavigationDelegate {
  public:
    virtual ~WKNavigationDelegate() = default;

    virtual void decidePolicyFor(WKWebView&, const WKNavigationAction&,
                                 const std::function<void(WKNavigationActionPolicy)>& decisionHandler) {
        decisionHandler(WKNavigationActionPolicy::Allow);
    }
    virtual void decidePolicyFor(WKWebView&, const WKNavigationResponse&,
                                 const std::function<void(WKNavigationResponsePolicy)>& decisionHandler) {
        decisionHandler(WKNavigationResponsePolicy::Allow);
    }
};

} // namespace platform
