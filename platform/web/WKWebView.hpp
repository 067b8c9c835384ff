// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A view that shows web pages and PDF documents such as the manual. Main thread only.
//
// WebKit is a library of some hundred megabytes that starts its own processes. The first load in the first
// view opens it, so that a program that never shows a page does not pay for it. Cookies, storage and cache
// are in memory only and are destroyed with the view. Downloads, dialogs, permissions and new windows are
// refused without telling the user. Ctrl with +, - or 0 zooms.
#pragma once

#include "platform/foundation/URL.hpp"
#include "platform/foundation/URLRequest.hpp"
#include "platform/ui/UIView.hpp"
#include "platform/web/WKNavigationDelegate.hpp"
#include "platform/web/WKUIDelegate.hpp"

#include <memory>
#include <string>

namespace platform {

class WebEngineView;

class WKWebView final : public UIView {
  public:
    /// Registers the class WKWebView, so that interface descriptions can use it as a "view-class".
    static void registerClass();

    WKWebView();
    /// Creates the view for an object of an interface description.
    explicit WKWebView(ImplementationPointer implementation);
    ~WKWebView() override;

    /// Sets the delegate that is called when a page asks for a new window. Keeps only a weak reference to it.
    void setUIDelegate(const std::weak_ptr<WKUIDelegate>& delegate);
    /// Sets the delegate that decides about navigations. Keeps only a weak reference to it. Without a
    /// delegate, all navigations are allowed.
    void setNavigationDelegate(const std::weak_ptr<WKNavigationDelegate>& delegate);

    /// Navigates to the URL of `request`. Loading ends with an error if there is no progress for the
    /// request's time-out. In place of a page that cannot be loaded, the view shows a page with the reason.
    void loadRequest(const URLRequest& request);
    /// Shows `html`. Its relative links are resolved against `baseURL`.
    void loadHTMLString(const std::string& html, const URL& baseURL);

  private:
    class Asker;
    WebEngineView* engine();

    std::unique_ptr<Asker> _asker;          // declared before `_engine`, which has a reference to it
    std::unique_ptr<WebEngineView> _engine; // null until the first load
};

} // namespace platform
