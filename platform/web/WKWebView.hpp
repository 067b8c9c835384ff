// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A view that shows pages and documents of the web, the manual among them. Main thread only.
//
// The web engine is a library of some hundred megabytes with processes of its own. It is opened by the first
// load of the first view, so that a program that never shows a page does not pay for it. Nothing that a page
// leaves behind is kept: cookies, storage and cache are in memory and are destroyed with the view. Downloads,
// dialogs, permissions and windows of a page are refused without telling the user. The keys Ctrl and +, -, 0
// zoom.
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
    /// Registers the "view-class" WKWebView, so that objects of interface descriptions can be web views.
    static void registerClass();

    WKWebView();
    /// Creates the view of such an object.
    explicit WKWebView(ImplementationPointer implementation);
    ~WKWebView() override;

    /// Sets the delegate, which is not kept, that is told of windows that pages ask for.
    void setUIDelegate(const std::weak_ptr<WKUIDelegate>& delegate);
    /// Sets the delegate, which is not kept, that decides on navigations; without one all are allowed.
    void setNavigationDelegate(const std::weak_ptr<WKNavigationDelegate>& delegate);

    /// Navigates to the URL of `request`. A source that stays silent for the request's time-out is given up;
    /// what cannot be loaded is replaced by a page that says why.
    void loadRequest(const URLRequest& request);
    /// Shows `html`, whose relative links start at `baseURL`.
    void loadHTMLString(const std::string& html, const URL& baseURL);

  private:
    class Asker;
    WebEngineView* engine();

    std::unique_ptr<Asker>
        _asker; // receives the engine's questions; declared before the engine, which refers to it
    std::unique_ptr<WebEngineView> _engine; // absent until the first load
};

} // namespace platform
