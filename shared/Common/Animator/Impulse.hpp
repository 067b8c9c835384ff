// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Moves a value that was kicked and coasts to rest: each tick damps the velocity and adds it to the value,
// until the velocity falls below a threshold. Two walls may bound the value. Single-threaded, on the run loop
// of the thread that calls `start`; a running timer keeps the impulse alive.
#pragma once

#include "platform/dispatch/Timer.hpp"
#include "shared/Common/Animator/detail/Callback.hpp"

#include <concepts>
#include <cstdint>
#include <memory>

namespace tonewright {

class Impulse : public std::enable_shared_from_this<Impulse> {
  public:
    Impulse() = default;
    virtual ~Impulse() = default;
    Impulse(const Impulse&) = delete;
    Impulse& operator=(const Impulse&) = delete;

    /// Creates an impulse of class `Kind` and sets it up, through an override of `setup` where `Kind` has
    /// one.
    template <std::derived_from<Impulse> Kind = Impulse>
    [[nodiscard]] static std::shared_ptr<Kind> create(std::int64_t frames, float amount,
                                                      float interval = 0.009F, float intensity = 0.75F) {
        auto impulse = std::make_shared<Kind>();
        static_cast<Impulse&>(*impulse).setup(frames, amount, interval, intensity);
        return impulse;
    }

    /// Prepares an impulse with an initial velocity of `amount` per tick, damped by the factor `intensity` on
    /// every tick of `interval` seconds, including the first. `frames` is stored and does not limit the
    /// motion. The value stays.
    virtual void setup(std::int64_t frames, float amount, float interval = 0.009F, float intensity = 0.75F);
    /// Keeps the value between `min` and `max`, both excluded, or removes the bounds.
    virtual void setMinMax(bool enabled, float min, float max);
    /// Starts a timer on the calling thread that ticks this. A timer that is already running is left running
    /// as well.
    virtual void start();
    /// Stops the timer and becomes idle, with value 0.
    virtual void stop();
    /// Performs one tick.
    virtual void animate();
    [[nodiscard]] virtual bool isFinished();
    /// Returns the initial velocity.
    [[nodiscard]] virtual float getSourceValue();
    /// Returns the present value.
    [[nodiscard]] float getValue() const noexcept { return _value; }

  private:
    friend struct AnimatorInside;

    void reset();

    std::shared_ptr<platform::Timer> _timer;
    std::int64_t _frames = -1; // -1 when idle
    std::int64_t _step = 0;
    float _amount = 0; // velocity per tick
    float _value = 0;
    float _source = 0;
    float _intensity = 0.75F;
    float _threshold = 0.001F;
    float _interval = 0.009F; // seconds
    float _minVal = -1024;
    float _maxVal = 1024;
    bool _collision = false;

  public:
    /// Called after every tick that moved.
    Callback<Impulse&> onAnimation;
    /// Called when the motion has died out, while the value is still set.
    Callback<Impulse&> onFinished;
    /// Called when a step would have reached a wall and was undone, before `onAnimation`.
    Callback<Impulse&> onCollision;
};

} // namespace tonewright
