// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A button. A press by mouse or key performs the actions that the interface description connects, at once.
// Main thread only.
#pragma once

#include "platform/ui/UIView.hpp"

#include <string>

namespace platform {

class UIButton final : public UIView {
  public:
    /// Creates a button with `title`; an underscore precedes the letter that presses it together with Alt.
    explicit UIButton(const std::string& title = {});
    explicit UIButton(ImplementationPointer implementation);

    [[nodiscard]] bool isEnabled() const;
    /// Lets the button be pressed, or not. One that is disabled while it has the keyboard's focus hands it to
    /// the nearest control beside it.
    void setEnabled(bool enabled);
    /// Does what a press does.
    void press();
};

} // namespace platform
