// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The events in an application's life. Main thread only.
#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>

namespace platform {

class UIApplication;
class UIWindow;

using LaunchOptions = std::map<std::string, std::string>;

class UIApplicationDelegate {
  public:
    UIApplicationDelegate() = default;
    virtual ~UIApplicationDelegate() = default;
    UIApplicationDelegate(const UIApplicationDelegate&) = delete;
    UIApplicationDelegate& operator=(const UIApplicationDelegate&) = delete;

    /// Receives the window of the main interface description.
    virtual void setWindow(std::shared_ptr<UIWindow>) {}
    /// Called before the main screen is loaded. The return value is not used.
    virtual bool application(UIApplication&,
                             const std::optional<LaunchOptions>& didFinishLaunchingWithOptions) {
        (void)didFinishLaunchingWithOptions;
        return true;
    }
    /// Called when the window gets the keyboard focus, and when it loses the focus.
    virtual void applicationDidBecomeActive(UIApplication&) {}
    virtual void applicationWillResignActive(UIApplication&) {}
    /// Called after the window has been closed, and before it is shown again.
    virtual void applicationDidEnterBackground(UIApplication&) {}
    virtual void applicationWillEnterForeground(UIApplication&) {}
    /// Called when the process is about to end normally.
    virtual void applicationWillTerminate(UIApplication&) {}
};

} // namespace platform
