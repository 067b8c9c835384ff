// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The interface between the program and the module with the web engine, which is opened on first use. Both
// sides are built together, so types of the standard library may cross it. Main thread only.
#pragma once

#include <functional>
#include <gtk/gtk.h>
#include <memory>
#include <string>

namespace platform {

/// Called at most once with whether to continue, at once or later; until it is called, the navigation waits.
using WebAnswer = std::function<void(bool allow)>;

/// Receives the engine's questions. A URI is empty if there is none.
class WebClient {
  public:
    virtual ~WebClient() = default;
    virtual void decideAction(const std::string& uri, const WebAnswer& answer) = 0;
    virtual void decideResponse(const std::string& uri, const WebAnswer& answer) = 0;
    /// A page asks for a window, which it does not get.
    virtual void windowWanted(const std::string& uri) = 0;
    /// A requested page has nothing to show yet (true), or has now, or has failed (false).
    virtual void workingChanged(bool isWorking) = 0;
};

/// One view of the engine. Destroying it also ends its processes.
class WebEngineView {
  public:
    virtual ~WebEngineView() = default;
    /// Returns the widget, which belongs to this object.
    [[nodiscard]] virtual GtkWidget* widget() const = 0;
    /// Loads `uri`; gives up after `timeoutSeconds` without any progress.
    virtual void load(const std::string& uri, double timeoutSeconds) = 0;
    virtual void loadHTML(const std::string& html, const std::string& baseURI) = 0;
};

/// The function that the module exports; `client` outlives the view.
using MakeWebEngineView = WebEngineView*(WebClient& client);
inline constexpr const char* MakeWebEngineViewSymbol = "platformMakeWebEngineView";

/// Creates a view, opening the module first if that has not been done; absent, with a sentence on standard
/// error, if it cannot be opened.
[[nodiscard]] std::unique_ptr<WebEngineView> makeWebEngineView(WebClient& client);

} // namespace platform
