// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The interface of the exhibits, each of which demonstrates one class of the animation engine. Main thread
// only.
#pragma once

#include "platform/ui/UIDrawingView.hpp"
#include "shared/Common/Animator/Easing.hpp"

#include <cstdint>
#include <memory>

namespace tonewright {

inline constexpr float FrameSeconds = 1 / 60.0F;
inline constexpr int RestTicks = 45; // pause between the end of a movement and its restart

/// The easing curve and the length of the exhibits' movement.
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

    /// Restarts with `movement`.
    virtual void restart(const Movement& movement) = 0;
    /// Advances the animation engine by one frame.
    virtual void tick() = 0;
    /// Shows the current values on the screen.
    virtual void show() = 0;
    /// Returns the number of animators and impulses that `tick` moves.
    [[nodiscard]] virtual std::int64_t tweens() const = 0;
};

/// Returns an exhibit in `view` of a stack, whose members start together and end one by one.
[[nodiscard]] std::unique_ptr<Exhibit> makeStackExhibit(std::shared_ptr<platform::UIDrawingView> view);
/// Returns an exhibit in `view` of a chain, whose members run one after the other.
[[nodiscard]] std::unique_ptr<Exhibit> makeChainExhibit(std::shared_ptr<platform::UIDrawingView> view);
/// Returns an exhibit in `view` of a sequencer, whose members overlap in time.
[[nodiscard]] std::unique_ptr<Exhibit> makeSequencerExhibit(std::shared_ptr<platform::UIDrawingView> view);

} // namespace tonewright
