// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The questions of a web view before it navigates and before it shows a response. Main thread only.
#pragma once

#include "platform/foundation/URL.hpp"

#include <cstdint>
#include <functional>
#include <optional>

namespace platform {

class WKWebView;

enum class WKNavigationActionPolicy : std::uint8_t { Cancel, Allow };
enum class WKNavigationResponsePolicy : std::uint8_t { Cancel, Allow };

/// A place to which the web view is about to navigate: a load, a hop of a redirect, a link, a frame, a
/// fragment.
struct WKNavigationAction {
    struct Request {
        std::optional<URL> url; // absent if the request names no place
    };
    Request request;
};

/// A response, before it is shown: asked once for each document.
struct WKNavigationResponse {
    struct Response {
        std::optional<URL> url;
    };
    Response response;
};

/// The functions passed in may be called at once or later, on the main thread; the first call counts. Until
/// one is called the navigation waits: dropping the function answers nothing.
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
