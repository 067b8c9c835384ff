// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The interface between the program and the shared library that uses WebKit (the module), which is loaded
// when it is first needed. Both are built with the same compiler, so the interface can use types of the
// standard library. Main thread only.
#pragma once

#include <functional>
#include <gtk/gtk.h>
#include <memory>
#include <string>

namespace platform {

/// Decides whether a navigation continues. Must be called at most once, immediately or later. The navigation
/// waits until then.
using WebAnswer = std::function<void(bool allow)>;

/// Receives WebKit's requests for decisions, and its notifications of state changes. The argument `uri` may
/// be empty.
class WebClient {
  public:
    virtual ~WebClient() = default;
    virtual void decideAction(const std::string& uri, const WebAnswer& answer) = 0;
    virtual void decideResponse(const std::string& uri, const WebAnswer& answer) = 0;
    /// Called when a page asks for a new window. No window is opened.
    virtual void windowWanted(const std::string& uri) = 0;
    /// Called with true when a page has been requested, and with false when there is something to show or
    /// loading has failed.
    virtual void workingChanged(bool isWorking) = 0;
};

/// One WebKit view. Destroying it also ends its processes.
class WebEngineView {
  public:
    virtual ~WebEngineView() = default;
    /// Returns the widget, which this object owns.
    [[nodiscard]] virtual GtkWidget* widget() const = 0;
    /// Loads `uri`. Stops loading after `timeoutSeconds` without progress.
    virtual void load(const std::string& uri, double timeoutSeconds) = 0;
    virtual void loadHTML(const std::string& html, const std::string& baseURI) = 0;
};

/// The function that the module exports. `client` must outlive the view.
using MakeWebEngineView = WebEngineView*(WebClient& client);
inline constexpr const char* MakeWebEngineViewSymbol = "platformMakeWebEngineView";

/// Creates a view. The first call loads the module. Returns null if the module cannot be loaded, and reports
/// the reason on standard error.
[[nodiscard]] std::unique_ptr<WebEngineView> makeWebEngineView(WebClient& client);

} // namespace platform
