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
    /// Called when the process is ready, before the main screen is loaded; returns whether the launch is
    /// accepted.
    virtual bool application(UIApplication&,
                             const std::optional<LaunchOptions>& didFinishLaunchingWithOptions) {
        (void)didFinishLaunchingWithOptions;
        return true;
    }
    /// Called when the window gets the keyboard, or loses it.
    virtual void applicationDidBecomeActive(UIApplication&) {}
    virtual void applicationWillResignActive(UIApplication&) {}
    /// Called when nothing of the application is on the screen any longer, or will be again.
    virtual void applicationDidEnterBackground(UIApplication&) {}
    virtual void applicationWillEnterForeground(UIApplication&) {}
    /// Called when the process is about to end in order.
    virtual void applicationWillTerminate(UIApplication&) {}
};

} // namespace platform
