// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An alert: a dialog in front of the presenter's window with a title, a message and a row of buttons. Escape
// and the dialog's close button act like its cancel button. Main thread only.
#pragma once

#include "platform/ui/UIViewController.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace platform {

enum class UIAlertControllerStyle : std::int64_t { ActionSheet = 0, Alert = 1 };
enum class UIAlertActionStyle : std::int64_t { Default = 0, Cancel = 1, Destructive = 2 };

/// One button of an alert.
class UIAlertAction final {
  public:
    using Handler = std::function<void(const UIAlertAction&)>;
    /// Creates an action. `handler`, which may be empty, is called after the alert has been closed.
    [[nodiscard]] static std::shared_ptr<UIAlertAction>
    actionWithTitle(std::string title, UIAlertActionStyle style, Handler handler);

    [[nodiscard]] const std::string& title() const noexcept { return _title; }
    [[nodiscard]] UIAlertActionStyle style() const noexcept { return _style; }
    [[nodiscard]] const Handler& handler() const noexcept { return _handler; }

  private:
    UIAlertAction(std::string title, UIAlertActionStyle style, Handler handler);

    std::string _title;
    UIAlertActionStyle _style;
    Handler _handler;
};

class UIAlertController final : public UIViewController {
  public:
    /// Creates an alert without buttons. Both styles are shown as a dialog.
    [[nodiscard]] static std::shared_ptr<UIAlertController>
    alertControllerWithTitle(std::string title, std::string message, UIAlertControllerStyle preferredStyle);

    /// Adds a button after the others. Must be called before the alert is presented.
    void addAction(std::shared_ptr<UIAlertAction> action) { _actions.push_back(std::move(action)); }
    [[nodiscard]] const std::vector<std::shared_ptr<UIAlertAction>>& actions() const noexcept {
        return _actions;
    }

  protected:
    /// Shows the dialog and returns at once. The dialog owns a reference to this controller until it is
    /// answered.
    void showOver(UIViewController& presenter, bool animated, std::function<void()> completion) override;

  private:
    UIAlertController(std::string title, std::string message);
    [[nodiscard]] int cancelIndex() const;
    void answer(int response) const;

    std::string _title;
    std::string _message;
    std::vector<std::shared_ptr<UIAlertAction>> _actions;
};

} // namespace platform
