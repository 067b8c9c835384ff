// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The help screen: a web view and the Exit button. It shows the manual, the maker's web site or a document,
// depending on `identifier`, and loads it each time the screen appears. It logs every navigation on standard
// output, allows pages and documents, and refuses other downloads and new windows.
//
// Main thread. Each segue to this screen creates a new controller, which is released when the screen is
// dismissed.
#pragma once

#include "platform/foundation/URL.hpp"
#include "platform/foundation/product.hpp"
#include "platform/ui/UIButton.hpp"
#include "platform/ui/UIViewController.hpp"
#include "platform/web/WKNavigationDelegate.hpp"
#include "platform/web/WKUIDelegate.hpp"
#include "platform/web/WKWebView.hpp"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace tonewright {

/// The maker's web site.
inline constexpr std::string_view WebSite = platform::product::WebSite;

/// Registers the classes of this screen and of its web view, so that interface descriptions can name them.
void registerHelpScreen();

// The names of the delegate functions that the web view calls cannot start with "webView", because the outlet
// has that name.
class HelpViewController : public platform::UIViewController,
                           public platform::WKNavigationDelegate,
                           public platform::WKUIDelegate {
  public:
    explicit HelpViewController(std::optional<std::string> nibName, const platform::Bundle* bundle = nullptr);
    /// Creates the screen that `coder` describes, or returns null if the coder has no description.
    [[nodiscard]] static std::shared_ptr<HelpViewController> initWithCoder(const platform::NSCoder& coder);

    std::string identifier = "showHelp";      // "showDocument", "showHelp" or "showInfo"; others show nothing
    std::optional<platform::URL> documentURL; // the document for "showDocument"
    std::weak_ptr<platform::WKWebView> webView;
    std::shared_ptr<platform::UIButton> buttonExit;

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    virtual void didReceiveMemoryWarning();

    /// Dismisses this screen.
    virtual void onButtonExit(const std::shared_ptr<platform::UIResponder>& sender);

    /// Allows every navigation that has a URL. Does not call `decisionHandler` if there is no URL.
    void
    decidePolicyFor(platform::WKWebView& view, const platform::WKNavigationAction& action,
                    const std::function<void(platform::WKNavigationActionPolicy)>& decisionHandler) override;
    /// Allows responses whose URL has the extension PDF, HTML or none, and cancels all others. Does not call
    /// `decisionHandler` if there is no URL.
    void decidePolicyFor(
        platform::WKWebView& view, const platform::WKNavigationResponse& response,
        const std::function<void(platform::WKNavigationResponsePolicy)>& decisionHandler) override;
    /// Logs the URL for which a page asks for a new window. Opens none.
    std::shared_ptr<platform::WKWebView>
    createWebViewWith(platform::WKWebView& view, const platform::WKWebViewConfiguration& configuration,
                      const platform::WKNavigationAction& action,
                      const platform::WKWindowFeatures& windowFeatures) override;

    /// Sets `identifier`, which selects what the screen shows when it appears next.
    virtual void prepareInfo(const std::string& which);

  protected:
    explicit HelpViewController(const platform::NSCoder& coder);
    void offerConnections(platform::InterfaceConnections& connections) override;

  private:
    virtual void loadHelpHtml(); // not used by any identifier
    virtual void loadHelpPdf();
    virtual void loadDocument();
    virtual void navigateWeb();
    [[nodiscard]] platform::WKWebView& page() const;
};

} // namespace tonewright
