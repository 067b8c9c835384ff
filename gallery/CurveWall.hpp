// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The forty curves, side by side: one plot with one dot each, all moved by animators on one stack, over and
// over. One of them is the chosen one. Main thread only.
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

    /// Makes the plots and puts them into the view.
    void viewDidLoad() override;

    /// Places the plots in rows of eight.
    void viewDidLayoutSubviews() override;
    /// Begins the movement anew, in `frames` frames.
    void restart(std::int64_t frames);
    /// Does one frame of the engine's work.
    void tick();
    /// Moves the dots on the screen to where the values are.
    void show();

    void choose(EnumEasing type);
    std::function<void(EnumEasing type)> onChosen;

    /// Returns the frame of the present movement, from 0 to `frames`.
    [[nodiscard]] std::int64_t frame() const noexcept { return _frame; }
    /// Returns the number of animators that move.
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
    int _rest = 0; // ticks until the movement begins again; 0 while it runs
};

} // namespace tonewright
