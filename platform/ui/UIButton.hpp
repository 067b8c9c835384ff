// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A button. A mouse click or key press immediately performs the actions that the interface description
// connects to the button. Main thread only.
#pragma once

#include "platform/ui/UIView.hpp"

#include <string>

namespace platform {

class UIButton final : public UIView {
  public:
    /// Creates a button with `title`. The letter after an underscore presses the button together with Alt.
    explicit UIButton(const std::string& title = {});
    explicit UIButton(ImplementationPointer implementation);

    [[nodiscard]] bool isEnabled() const;
    /// Enables or disables the button. If it has the keyboard focus when it is disabled, the focus moves to
    /// the nearest control beside it.
    void setEnabled(bool enabled);
    /// Performs the button's actions, as a press does.
    void press();
};

} // namespace platform
