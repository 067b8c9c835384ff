// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Shows the forty curves side by side. Each has a plot and a dot; the animators on one stack move all dots
// again and again. One of the curves is chosen. Main thread only.
#pragma once

#include "gallery/Plot.hpp"
#include "platform/ui/UIDrawingView.hpp"
#include "platform/ui/UIToggle.hpp"
#include "platform/ui/UIViewController.hpp"
#include "shared/Common/Animator/AnimatorStack.hpp"

#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace tonewright {

class CurveWall final : public platform::UIViewController {
  public:
    CurveWall();

    /// Creates the plots and adds them to the view.
    void viewDidLoad() override;

    /// Places the plots in rows of eight.
    void viewDidLayoutSubviews() override;
    /// Restarts the movement, which takes `frames` frames.
    void restart(std::int64_t frames);
    /// Advances the animation engine by one frame.
    void tick();
    /// Moves the dots on the screen to the current values.
    void show();

    void choose(EnumEasing type);
    std::function<void(EnumEasing type)> onChosen;

    /// Returns the frame of the current movement, from 0 to `frames`.
    [[nodiscard]] std::int64_t frame() const noexcept { return _frame; }
    /// Returns the number of running animators.
    [[nodiscard]] std::int64_t tweens() { return _stack->getCount(); }

  private:
    void fitCaptions(double width);

    struct Entry {
        std::shared_ptr<Plot> plot; // shared with the drawing
        std::shared_ptr<Animator> animator;
        std::shared_ptr<platform::UIDrawingView> drawing;
        std::shared_ptr<platform::UIToggle> toggle;
    };

    std::vector<Entry> _entries;
    std::shared_ptr<AnimatorStack> _stack = std::make_shared<AnimatorStack>();
    std::int64_t _frames = 1;
    std::int64_t _frame = 0;
    int _captionLines = 1;
    int _rest = 0; // ticks until the movement restarts; 0 while it runs
};

} // namespace tonewright
