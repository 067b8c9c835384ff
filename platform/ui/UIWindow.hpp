// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A window of the desktop with the screen that a controller fills. Main thread only.
#pragma once

#include "platform/ui/UIView.hpp"

#include <functional>
#include <memory>

namespace platform {

class UIViewController;

class UIWindow final : public UIView {
  public:
    UIWindow();
    explicit UIWindow(ImplementationPointer implementation);
    ~UIWindow() override;

    [[nodiscard]] std::shared_ptr<UIViewController> rootViewController() const { return _rootViewController; }
    /// Fills the window with the view of `controller`, which is loaded now.
    void setRootViewController(std::shared_ptr<UIViewController> controller);

    /// Shows the window and gives it the keyboard.
    void makeKeyAndVisible();
    /// Removes the window from the desktop for good.
    void close();

    std::function<void()> onCloseRequest; // called when the user asks to close it
    std::function<void(bool active)> onActiveChange;

  private:
    std::shared_ptr<UIViewController> _rootViewController;
};

} // namespace platform
