// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A view that shows pages and documents of the web, the manual among them. Main thread only.
//
// The web engine is a library of some hundred megabytes with processes of its own. It is opened by the first
// load of the first view, so that a program that never shows a page is spared it. Nothing that a page leaves
// behind is kept: cookies, storage and cache live in memory and go with the view. Downloads, dialogs,
// permissions and windows of a page are refused without a word to the user. The keys Ctrl and +, -, 0 zoom.
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
    /// Lets objects of interface descriptions with the "view-class" WKWebView be web views.
    static void registerClass();

    WKWebView();
    /// Makes the view behind such an object.
    explicit WKWebView(std::unique_ptr<Implementation> implementation);
    ~WKWebView() override;

    /// Lets `delegate`, which is not kept, hear of windows that pages ask for.
    void setUIDelegate(const std::weak_ptr<WKUIDelegate>& delegate);
    /// Lets `delegate`, which is not kept, decide on navigations; without one all are allowed.
    void setNavigationDelegate(const std::weak_ptr<WKNavigationDelegate>& delegate);

    /// Goes to the URL of `request`. A source that stays silent for the request's time-out is given up; what
    /// cannot be loaded is told on a page in its place.
    void loadRequest(const URLRequest& request);
    /// Shows `html`, whose relative links start from `baseURL`.
    void loadHTMLString(const std::string& html, const URL& baseURL);

  private:
    class Asker;
    WebEngineView* engine();

    std::unique_ptr<Asker> _asker; // hears the engine's questions; before the engine, which refers to it
    std::unique_ptr<WebEngineView> _engine; // absent until the first load
};

} // namespace platform
