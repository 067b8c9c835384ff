// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "app/AppDelegate.hpp"

namespace tonewright {

void AppDelegate::setWindow(std::shared_ptr<platform::UIWindow> mainWindow) {
    window = std::move(mainWindow);
}

bool AppDelegate::application(platform::UIApplication&, const std::optional<platform::LaunchOptions>&) {
    return true;
}

// These functions do nothing: playback does not depend on the window, and nothing is saved at the end.
void AppDelegate::applicationWillResignActive(platform::UIApplication&) {}
void AppDelegate::applicationDidEnterBackground(platform::UIApplication&) {}
void AppDelegate::applicationWillEnterForeground(platform::UIApplication&) {}
void AppDelegate::applicationDidBecomeActive(platform::UIApplication&) {}
void AppDelegate::applicationWillTerminate(platform::UIApplication&) {}

} // namespace tonewright
