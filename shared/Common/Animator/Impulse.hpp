// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Moves a value with an initial velocity that decays: each tick damps the velocity and adds it to the value,
// until the velocity falls below a threshold. Optionally the value bounces off a minimum and a maximum.
// Single-threaded, on the run loop of the thread that calls `start`. A running timer keeps the impulse alive.
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

    /// Creates an impulse of class `Kind` and calls its `setup`, which may be overridden.
    template <std::derived_from<Impulse> Kind = Impulse>
    [[nodiscard]] static std::shared_ptr<Kind> create(std::int64_t frames, float amount,
                                                      float interval = 0.009F, float intensity = 0.75F) {
        auto impulse = std::make_shared<Kind>();
        static_cast<Impulse&>(*impulse).setup(frames, amount, interval, intensity);
        return impulse;
    }

    /// Prepares an impulse with an initial velocity of `amount` per tick. Every tick of `interval` seconds,
    /// including the first, multiplies the velocity by `intensity`. `frames` does not limit the motion. The
    /// value does not change.
    virtual void setup(std::int64_t frames, float amount, float interval = 0.009F, float intensity = 0.75F);
    /// Keeps the value between `min` and `max`, both exclusive, or removes these bounds if `enabled` is
    /// false.
    virtual void setMinMax(bool enabled, float min, float max);
    /// Starts a timer on the calling thread that calls `animate`. Does not stop a timer that is already
    /// running.
    virtual void start();
    /// Stops the timer, makes the impulse idle and sets the value to 0.
    virtual void stop();
    /// Performs one tick.
    virtual void animate();
    [[nodiscard]] virtual bool isFinished();
    /// Returns the initial velocity.
    [[nodiscard]] virtual float getSourceValue();
    /// Returns the current value.
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
    /// Called after every tick that has moved the value.
    Callback<Impulse&> onAnimation;
    /// Called when the motion has ended, before the value is reset to 0.
    Callback<Impulse&> onFinished;
    /// Called when a step has reached a bound and has been undone, before `onAnimation`.
    Callback<Impulse&> onCollision;
};

} // namespace tonewright
