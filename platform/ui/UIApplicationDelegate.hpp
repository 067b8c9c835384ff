// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What an application hears of its own life. Main thread only.
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

    /// Takes the window of the main interface description.
    virtual void setWindow(std::shared_ptr<UIWindow>) {}
    /// Hear that the process is ready, before the main screen is loaded; returns whether the launch is
    /// accepted.
    virtual bool application(UIApplication&,
                             const std::optional<LaunchOptions>& didFinishLaunchingWithOptions) {
        (void)didFinishLaunchingWithOptions;
        return true;
    }
    /// Hear that the window has the keyboard, or has it no longer.
    virtual void applicationDidBecomeActive(UIApplication&) {}
    virtual void applicationWillResignActive(UIApplication&) {}
    /// Hear that nothing of the application is on the screen any longer, or will be again.
    virtual void applicationDidEnterBackground(UIApplication&) {}
    virtual void applicationWillEnterForeground(UIApplication&) {}
    /// Hear that the process is about to end in order.
    virtual void applicationWillTerminate(UIApplication&) {}
};

} // namespace platform
