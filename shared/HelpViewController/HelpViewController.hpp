// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The help screen: a web view and the Exit button. It shows the manual, the maker's web site or a document,
// as selected by `identifier`, loads it again at each appearance, logs every navigation on standard output,
// allows pages and documents, and refuses other downloads and new windows.
//
// Main thread. Each segue to this screen creates a new one, which is released when it is dismissed.
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

/// Registers the screen's class and its view's with interface descriptions.
void registerHelpScreen();

// The outlet has the name with which the operations of the web view's protocols begin; a class can use a name
// only once, so the operations are named after their first label.
class HelpViewController : public platform::UIViewController,
                           public platform::WKNavigationDelegate,
                           public platform::WKUIDelegate {
  public:
    explicit HelpViewController(std::optional<std::string> nibName, const platform::Bundle* bundle = nullptr);
    /// Creates the screen that `coder` describes; absent if the coder cannot be used.
    [[nodiscard]] static std::shared_ptr<HelpViewController> initWithCoder(const platform::NSCoder& coder);

    std::string identifier = "showHelp"; // "showDocument", "showHelp", "showInfo"; any other shows nothing
    std::optional<platform::URL> documentURL; // what "showDocument" shows
    std::weak_ptr<platform::WKWebView> webView;
    std::shared_ptr<platform::UIButton> buttonExit;

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    virtual void didReceiveMemoryWarning();

    /// Dismisses this screen.
    virtual void onButtonExit(const std::shared_ptr<platform::UIResponder>& sender);

    /// Allows every navigation that has a URL; one without a URL gets no answer.
    void
    decidePolicyFor(platform::WKWebView& view, const platform::WKNavigationAction& action,
                    const std::function<void(platform::WKNavigationActionPolicy)>& decisionHandler) override;
    /// Allows responses without an extension, PDF and HTML, cancels the rest; without a URL there is no
    /// answer.
    void decidePolicyFor(
        platform::WKWebView& view, const platform::WKNavigationResponse& response,
        const std::function<void(platform::WKNavigationResponsePolicy)>& decisionHandler) override;
    /// Logs which page asks for a window; it gets none.
    std::shared_ptr<platform::WKWebView>
    createWebViewWith(platform::WKWebView& view, const platform::WKWebViewConfiguration& configuration,
                      const platform::WKNavigationAction& action,
                      const platform::WKWindowFeatures& windowFeatures) override;

    /// Selects what the next appearance shows.
    virtual void prepareInfo(const std::string& which);

  protected:
    explicit HelpViewController(const platform::NSCoder& coder);
    void offerConnections(platform::InterfaceConnections& connections) override;

  private:
    virtual void loadHelpHtml(); // kept: no identifier leads to it
    virtual void loadHelpPdf();
    virtual void loadDocument();
    virtual void navigateWeb();
    [[nodiscard]] platform::WKWebView& page() const;
};

} // namespace tonewright
