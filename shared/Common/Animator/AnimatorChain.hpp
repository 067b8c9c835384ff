// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Plays animators one after the other on one timer, forwards or backwards; or, asynchronously, starts one per
// tick on its own timer. Members that have played are idle and are skipped the next time unless they are
// prepared again (`Animator::rewind`). Single-threaded, on the run loop of the thread that calls `start`; a
// running timer keeps the chain alive.
#pragma once

#include "shared/Common/Animator/Animator.hpp"

#include <cstdint>
#include <memory>

namespace tonewright {

class MemberList;

class AnimatorChain : public std::enable_shared_from_this<AnimatorChain> {
  public:
    AnimatorChain();
    virtual ~AnimatorChain();
    AnimatorChain(const AnimatorChain&) = delete;
    AnimatorChain& operator=(const AnimatorChain&) = delete;

    /// Appends `item`; null is ignored.
    virtual void add(std::shared_ptr<Animator> item);
    /// Removes the first entry that is `item`; null is ignored, an animator that is not a member is fatal.
    /// The position of the chain stays.
    virtual void remove(const std::shared_ptr<Animator>& item);
    /// Stops and removes all members.
    virtual void removeAll();
    [[nodiscard]] virtual std::int64_t getCount();
    [[nodiscard]] virtual std::int64_t getCurrentIndex();
    /// Returns the current member, if it is neither the first nor the last.
    [[nodiscard]] virtual std::shared_ptr<Animator> getCurrentItem();
    /// Starts a timer on the calling thread that ticks this. A timer that is already running is left running
    /// as well.
    virtual void start();
    /// Stops the timer and goes back to the first member. Members keep their state.
    virtual void stop();
    /// Moves backwards (`direction` true) or forwards from the next step on.
    virtual void setBackwards(bool direction);
    /// Performs one tick.
    virtual void animate();

  private:
    friend struct AnimatorInside;

    void reset();

    std::shared_ptr<platform::Timer> _timer;
    const std::unique_ptr<MemberList> _animators;
    std::int64_t _currentIndex = 0;
    std::int64_t _direction = 1;

  public:
    /// Seconds per tick; read by `start`.
    float interval = 0.005F;
    /// Starts members on their own timers, one per tick, instead of playing them in turn.
    bool async = false;
    /// Called with the current member on every tick, before it is advanced or started.
    Callback<AnimatorChain&, Animator&> onAnimation;
    /// Called when the chain has passed its end, before it stops.
    Callback<AnimatorChain&> onFinished;
};

} // namespace tonewright
