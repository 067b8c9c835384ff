// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The application's delegate, which owns the window. Main thread.
#pragma once

#include "platform/ui/UIApplicationDelegate.hpp"
#include "platform/ui/UIResponder.hpp"
#include "platform/ui/UIWindow.hpp"

#include <memory>
#include <optional>

namespace tonewright {

class AppDelegate : public platform::UIResponder, public platform::UIApplicationDelegate {
  public:
    std::shared_ptr<platform::UIWindow> window; // created from the interface description

    void setWindow(std::shared_ptr<platform::UIWindow> mainWindow) override;
    bool application(platform::UIApplication& application,
                     const std::optional<platform::LaunchOptions>& didFinishLaunchingWithOptions) override;
    void applicationWillResignActive(platform::UIApplication& application) override;
    void applicationDidEnterBackground(platform::UIApplication& application) override;
    void applicationWillEnterForeground(platform::UIApplication& application) override;
    void applicationDidBecomeActive(platform::UIApplication& application) override;
    void applicationWillTerminate(platform::UIApplication& application) override;
};

} // namespace tonewright
