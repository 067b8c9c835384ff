// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A button that shows a view and stays pressed while it is chosen, by mouse or key. At most one toggle of a
// group is chosen. Main thread only.
#pragma once

#include "platform/ui/UIView.hpp"

#include <functional>
#include <memory>
#include <string>

namespace platform {

class UIToggle final : public UIView {
  public:
    /// Creates a toggle that shows `content` and has the accessible name `name`. If `fellow` is not null, the
    /// new toggle joins its group.
    UIToggle(std::shared_ptr<UIView> content, const std::string& name, const UIToggle* fellow = nullptr);
    ~UIToggle() override;

    /// Chooses this toggle, as a press does.
    void choose();

    std::function<void()> onChosen; // called when the toggle becomes chosen

  private:
    std::shared_ptr<UIView> _content;
};

} // namespace platform
