// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A button that shows a view and stays down while it is chosen; at most one toggle of a group is. Chosen by
// mouse or key. Main thread only.
#pragma once

#include "platform/ui/UIView.hpp"

#include <functional>
#include <memory>
#include <string>

namespace platform {

class UIToggle final : public UIView {
  public:
    /// Creates a toggle that shows `content` and is called `name` by assistive technology; with `fellow`, it
    /// joins that toggle's group.
    UIToggle(std::shared_ptr<UIView> content, const std::string& name, const UIToggle* fellow = nullptr);
    ~UIToggle() override;

    /// Chooses this toggle of its group, as a press does.
    void choose();

    std::function<void()> onChosen; // called when it becomes the chosen one

  private:
    std::shared_ptr<UIView> _content;
};

} // namespace platform
