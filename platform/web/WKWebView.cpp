// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "platform/web/WKWebView.hpp"

#include "platform/foundation/translated.hpp"
#include "platform/ui/classRegistry.hpp"
#include "platform/ui/widgets.hpp"
#include "platform/web/detail/WebEngine.hpp"
#include "platform/web/detail/WorkingNotice.hpp"

#include <gtk/gtk.h>

namespace platform {
namespace {

// WebKit's URLs follow the rules of browsers, which leave some characters unencoded that RFC 3986 requires to
// be encoded.
std::optional<URL> urlOf(const std::string& text) {
    if (text.empty()) return std::nullopt;
    if (auto url = URL::fromString(text)) return url;
    constexpr std::string_view Reserved = ":/?#[]@!$&'()*+,;=%-._~"; // besides letters and digits
    std::string encoded;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char byte = text[i];
        const bool isBarePercent =
            byte == '%' && (i + 2 >= text.size() || g_ascii_isxdigit(text[i + 1]) == 0 ||
                            g_ascii_isxdigit(text[i + 2]) == 0);
        if (!isBarePercent && (g_ascii_isalnum(byte) != 0 || Reserved.find(byte) != std::string_view::npos)) {
            encoded += byte;
        } else {
            constexpr std::string_view Digits = "0123456789ABCDEF";
            const auto value = static_cast<unsigned char>(byte);
            encoded.append({'%', Digits[value >> 4U], Digits[value & 15U]});
        }
    }
    return URL::fromString(encoded);
}

GtkWidget* makeNotice() {
    GtkWidget* label = gtk_label_new(translated("This page cannot be shown: the web engine is missing."));
    gtk_label_set_wrap(GTK_LABEL(label), TRUE);
    return label;
}

} // namespace

/// Passes WebKit's requests for decisions to the delegates.
class WKWebView::Asker final : public WebClient {
  public:
    explicit Asker(WKWebView& view)
        : _view(view)
        , _working(widgetOf(view)) {}

    void decideAction(const std::string& uri, const WebAnswer& answer) override {
        const auto delegate = navigation.lock();
        if (!delegate) return answer(true);
        delegate->decidePolicyFor(
            _view, WKNavigationAction{{urlOf(uri)}},
            [answer](WKNavigationActionPolicy policy) { answer(policy == WKNavigationActionPolicy::Allow); });
    }
    void decideResponse(const std::string& uri, const WebAnswer& answer) override {
        const auto delegate = navigation.lock();
        if (!delegate) return answer(true);
        delegate->decidePolicyFor(_view, WKNavigationResponse{{urlOf(uri)}},
                                  [answer](WKNavigationResponsePolicy policy) {
                                      answer(policy == WKNavigationResponsePolicy::Allow);
                                  });
    }
    void windowWanted(const std::string& uri) override {
        if (const auto delegate = ui.lock()) {
            delegate->createWebViewWith(_view, {}, WKNavigationAction{{urlOf(uri)}}, {});
        }
    }

    void workingChanged(bool isWorking) override { isWorking ? _working.begin() : _working.end(); }

    std::weak_ptr<WKUIDelegate> ui;
    std::weak_ptr<WKNavigationDelegate> navigation;

  private:
    WKWebView& _view;
    WorkingNotice _working;
};

void WKWebView::registerClass() {
    registerViewFactory("WKWebView", [](ImplementationPointer implementation) {
        return std::make_shared<WKWebView>(std::move(implementation));
    });
}

WKWebView::WKWebView()
    : _asker(std::make_unique<Asker>(*this)) {}

WKWebView::WKWebView(ImplementationPointer implementation)
    : UIView(std::move(implementation))
    , _asker(std::make_unique<Asker>(*this)) {}

WKWebView::~WKWebView() {
    _asker->workingChanged(false);
    GtkWidget* child = gtk_widget_get_first_child(widgetOf(*this));
    if (child != nullptr) gtk_widget_unparent(child);
}

void WKWebView::setUIDelegate(const std::weak_ptr<WKUIDelegate>& delegate) {
    _asker->ui = delegate;
}

void WKWebView::setNavigationDelegate(const std::weak_ptr<WKNavigationDelegate>& delegate) {
    _asker->navigation = delegate;
}

void WKWebView::loadRequest(const URLRequest& request) {
    if (WebEngineView* shown = engine()) shown->load(request.url.absoluteString(), request.timeoutInterval);
}

void WKWebView::loadHTMLString(const std::string& html, const URL& baseURL) {
    if (WebEngineView* shown = engine()) shown->loadHTML(html, baseURL.absoluteString());
}

WebEngineView* WKWebView::engine() {
    GtkWidget* container = widgetOf(*this);
    if (gtk_widget_get_first_child(container) != nullptr) return _engine.get(); // the page, or the notice
    _engine = makeWebEngineView(*_asker);
    GtkWidget* content = _engine ? _engine->widget() : makeNotice();
    // The page gets the keyboard focus as soon as it is on the screen.
    g_signal_connect(content, "map", G_CALLBACK(gtk_widget_grab_focus), nullptr);
    fillWidget(container, content);
    return _engine.get();
}

} // namespace platform
