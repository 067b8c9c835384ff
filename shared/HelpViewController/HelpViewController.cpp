// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/HelpViewController/HelpViewController.hpp"

#include "platform/foundation/Bundle.hpp"
#include "platform/foundation/console.hpp"
#include "platform/foundation/fatal.hpp"
#include "platform/foundation/textOfFile.hpp"
#include "platform/ui/classRegistry.hpp"

#include <algorithm>

namespace tonewright {

using platform::print;
using platform::URL;
using platform::URLRequest;
using platform::WKNavigationActionPolicy;
using platform::WKNavigationResponsePolicy;

namespace {

// Changes only ASCII letters, independent of the locale.
std::string uppercased(std::string text) {
    std::transform(text.begin(), text.end(), text.begin(),
                   [](char c) { return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c; });
    return text;
}

URL requiredResource(std::string_view name, std::string_view extension) {
    const auto url = platform::Bundle::main().URLForResource(name, extension);
    if (!url) {
        platform::fatal("The resource \"" + std::string(name) + "." + std::string(extension) +
                        "\" is missing.");
    }
    return *url;
}

} // namespace

void registerHelpScreen() {
    platform::registerClass<HelpViewController>("HelpViewController");
    platform::WKWebView::registerClass();
}

HelpViewController::HelpViewController(std::optional<std::string> nibName, const platform::Bundle* bundle)
    : UIViewController(std::move(nibName), bundle) {}

HelpViewController::HelpViewController(const platform::NSCoder& coder)
    : UIViewController(coder) {}

std::shared_ptr<HelpViewController> HelpViewController::initWithCoder(const platform::NSCoder& coder) {
    if (!canDecode(coder)) return nullptr;
    return std::shared_ptr<HelpViewController>(new HelpViewController(coder));
}

void HelpViewController::offerConnections(platform::InterfaceConnections& connections) {
    connections.outlet("webView", webView);
    connections.outlet("buttonExit", buttonExit);
    connections.action("onButtonExit:", this, &HelpViewController::onButtonExit);
}

platform::WKWebView& HelpViewController::page() const {
    return platform::unwrap(webView.lock()); // the screen owns the web view
}

void HelpViewController::prepareInfo(const std::string& which) {
    identifier = which;
}

void HelpViewController::viewDidLoad() {
    UIViewController::viewDidLoad();
    const auto self = std::static_pointer_cast<HelpViewController>(shared_from_this());
    page().setUIDelegate(self);
    page().setNavigationDelegate(self);
}

void HelpViewController::didReceiveMemoryWarning() {}

void HelpViewController::viewWillAppear(bool animated) {
    UIViewController::viewWillAppear(animated);
    if (identifier == "showDocument") {
        loadDocument();
    } else if (identifier == "showHelp") {
        loadHelpPdf();
    } else if (identifier == "showInfo") {
        navigateWeb();
    }
}

void HelpViewController::loadHelpPdf() {
    page().loadRequest(URLRequest(requiredResource("manual", "pdf")));
}

void HelpViewController::loadDocument() {
    if (documentURL) page().loadRequest(URLRequest(*documentURL));
}

void HelpViewController::navigateWeb() {
    page().loadRequest(URLRequest(platform::unwrap(URL::fromString(WebSite))));
}

void HelpViewController::loadHelpHtml() {
    const std::string path = requiredResource("help", "html").path();
    const auto text = platform::stringWithContentsOfFile(path);
    if (!text) {
        print(text.error().description());
        return;
    }
    page().loadHTMLString(text.value(), URL::fileURLWithPath(path));
}

void HelpViewController::onButtonExit(const std::shared_ptr<platform::UIResponder>&) {
    dismissViewControllerAnimated(true, [] {});
}

void HelpViewController::decidePolicyFor(
    platform::WKWebView&, const platform::WKNavigationAction& action,
    const std::function<void(WKNavigationActionPolicy)>& decisionHandler) {
    print("navigationAction: ");
    const auto& url = action.request.url;
    if (!url) return; // without a decision, the navigation waits
    print(url->absoluteString());
    decisionHandler(WKNavigationActionPolicy::Allow);
}

void HelpViewController::decidePolicyFor(
    platform::WKWebView&, const platform::WKNavigationResponse& response,
    const std::function<void(WKNavigationResponsePolicy)>& decisionHandler) {
    print("navigationResponse: ");
    const auto& url = response.response.url;
    if (!url) return; // without a decision, the response waits
    print(url->absoluteString());
    const std::string extension = uppercased(url->pathExtension());
    const bool isShown = extension.empty() || extension == "PDF" || extension == "HTML";
    decisionHandler(isShown ? WKNavigationResponsePolicy::Allow : WKNavigationResponsePolicy::Cancel);
}

std::shared_ptr<platform::WKWebView>
HelpViewController::createWebViewWith(platform::WKWebView&, const platform::WKWebViewConfiguration&,
                                      const platform::WKNavigationAction& action,
                                      const platform::WKWindowFeatures&) {
    print("createWebViewWith:");
    if (const auto& url = action.request.url) print(url->absoluteString());
    return nullptr;
}

} // namespace tonewright
