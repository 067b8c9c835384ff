// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// An impulse between two walls: a ball that is flicked, coasts, strikes the walls and comes to rest. Main
// thread only.
#pragma once

#include "gallery/Exhibit.hpp"
#include "shared/Common/Animator/Impulse.hpp"

namespace tonewright {

class ImpulseExhibit final : public Exhibit {
  public:
    explicit ImpulseExhibit(std::shared_ptr<platform::UIDrawingView> view);

    /// Kicks the ball away from the nearer wall; a moving ball takes the new velocity.
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
    double _origin = 0; // the position at which the impulse has the value 0
    // Half the way between the walls, in the impulse's units. What moves slower covers the same units per
    // tick on a longer way, so that the velocity at which the impulse comes to rest looks the same at every
    // speed.
    double _reach = 1;
    int _flash = 0; // ticks for which the last strike still shows
};

} // namespace tonewright
