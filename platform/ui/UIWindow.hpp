// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A top-level window filled with the view of a controller. Main thread only.
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
    /// Loads the view of `controller` and fills the window with it.
    void setRootViewController(std::shared_ptr<UIViewController> controller);

    /// Shows the window and gives it the keyboard focus.
    void makeKeyAndVisible();
    /// Hides the window.
    void close();

    std::function<void()> onCloseRequest; // called when the user asks to close the window
    std::function<void(bool active)> onActiveChange;

  private:
    std::shared_ptr<UIViewController> _rootViewController;
};

} // namespace platform
