// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One WebKit view, its pending decisions and its shutdown. Main thread only.
#pragma once

#include "platform/ui/GObjectRef.hpp"
#include "platform/web/detail/WebEngine.hpp"
#include "platform/web/engine/PageTimeout.hpp"

#include <map>
#include <webkit/webkit.h>

namespace platform {

/// The policy decisions that have not been made yet. WebKit allows a navigation if its decision object is
/// released without an answer, so each object is kept until it is answered or its view is destroyed.
class PendingDecisions {
  public:
    PendingDecisions() = default;
    ~PendingDecisions();
    PendingDecisions(const PendingDecisions&) = delete;
    PendingDecisions& operator=(const PendingDecisions&) = delete;

    void add(WebKitPolicyDecision* decision);
    void answer(WebKitPolicyDecision* decision, bool allow);

  private:
    std::map<WebKitPolicyDecision*, GObjectRef<WebKitPolicyDecision>> _waiting;
};

class EngineView final : public WebEngineView {
  public:
    explicit EngineView(WebClient& client);
    ~EngineView() override;
    EngineView(const EngineView&) = delete;
    EngineView& operator=(const EngineView&) = delete;

    [[nodiscard]] GtkWidget* widget() const override { return GTK_WIDGET(_view.get()); }
    void load(const std::string& uri, double timeoutSeconds) override;
    void loadHTML(const std::string& html, const std::string& baseURI) override;

  private:
    gboolean decide(WebKitPolicyDecision* decision, WebKitPolicyDecisionType type);
    [[nodiscard]] WebAnswer answerTo(WebKitPolicyDecision* decision);
    void loadChanged(WebKitLoadEvent event);
    gboolean loadFailed(const char* uri, const GError& error);
    void processEnded();
    void tellIsWorking(bool isWorking);
    void tell(const std::string& title, const std::string& sentence, const std::string& uri);

    WebClient& _client;
    GObjectRef<WebKitWebContext> _context;
    GObjectRef<WebKitNetworkSession> _session;
    GObjectRef<WebKitWebView> _view;
    std::shared_ptr<PendingDecisions> _pending = std::make_shared<PendingDecisions>();
    PageTimeout _timeout;
    bool _isWorking = false;        // a page has been requested and nothing of it is visible yet
    bool _isNotice = false;         // the page that is loading or shown is one of our error pages
    bool _noticeIsStarting = false; // an error page has been requested, but WebKit has not started loading it
};

} // namespace platform
