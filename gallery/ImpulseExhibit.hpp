// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Demonstrates an impulse with a ball between two walls: it is flicked, slows down, bounces off the walls and
// comes to rest. Main thread only.
#pragma once

#include "gallery/Exhibit.hpp"
#include "shared/Common/Animator/Impulse.hpp"

namespace tonewright {

class ImpulseExhibit final : public Exhibit {
  public:
    explicit ImpulseExhibit(std::shared_ptr<platform::UIDrawingView> view);

    /// Flicks the ball towards the more distant wall. The velocity of a moving ball is replaced.
    void flick();

    void restart(const Movement& movement) override;
    void tick() override;
    void show() override;
    [[nodiscard]] std::int64_t tweens() const override { return _impulse->isFinished() ? 0 : 1; }

  private:
    /// Returns the ball's position, -1 at the left wall and 1 at the right one.
    [[nodiscard]] double position() const {
        return _origin + static_cast<double>(_impulse->getValue()) / _reach;
    }

    std::shared_ptr<platform::UIDrawingView> _view;
    std::shared_ptr<Impulse> _impulse = std::make_shared<Impulse>();
    double _origin = 0; // the ball's position when the value of the impulse is 0
    // Half the distance between the walls in units of the impulse. For a slower movement the velocity per
    // tick stays the same and this distance becomes larger, so that the ball seems to stop at the same
    // velocity at every speed.
    double _reach = 1;
    int _flash = 0; // remaining ticks for which the last collision is shown
};

} // namespace tonewright
