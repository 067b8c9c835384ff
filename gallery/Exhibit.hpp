// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// One of the engine's groups on display: what the screen asks of each. Main thread only.
#pragma once

#include "platform/ui/UIDrawingView.hpp"
#include "shared/Common/Animator/Easing.hpp"

#include <cstdint>
#include <memory>

namespace tonewright {

inline constexpr float FrameSeconds = 1 / 60.0F;
inline constexpr int RestTicks = 45; // between the end of a movement and its new beginning

/// How the exhibits move.
struct Movement {
    EnumEasing type = EnumEasing::EASING_easeOutBounce;
    std::int64_t frames = 120;
};

class Exhibit {
  public:
    Exhibit() = default;
    virtual ~Exhibit() = default;
    Exhibit(const Exhibit&) = delete;
    Exhibit& operator=(const Exhibit&) = delete;

    /// Starts again with this movement.
    virtual void restart(const Movement& movement) = 0;
    /// Does one frame of the engine's work.
    virtual void tick() = 0;
    /// Shows the current values on the screen.
    virtual void show() = 0;
    /// Returns the number of animators and impulses that `tick` moves.
    [[nodiscard]] virtual std::int64_t tweens() const = 0;
};

/// Returns a stack, shown in `view`, whose members start together and leave one by one.
[[nodiscard]] std::unique_ptr<Exhibit> makeStackExhibit(std::shared_ptr<platform::UIDrawingView> view);
/// Returns a chain, shown in `view`, whose members hand over to each other.
[[nodiscard]] std::unique_ptr<Exhibit> makeChainExhibit(std::shared_ptr<platform::UIDrawingView> view);
/// Returns a timeline, shown in `view`, whose members overlap.
[[nodiscard]] std::unique_ptr<Exhibit> makeSequencerExhibit(std::shared_ptr<platform::UIDrawingView> view);

} // namespace tonewright
