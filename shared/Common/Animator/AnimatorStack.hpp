// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs animators in parallel on one timer: each tick advances every unfinished one by a frame, and those that
// arrive are dropped. Single-threaded, on the run loop of the thread that calls `start`; a running timer
// keeps the stack alive.
#pragma once

#include "shared/Common/Animator/Animator.hpp"

#include <cstdint>
#include <memory>
#include <vector>

namespace tonewright {

class MemberList;

class AnimatorStack : public std::enable_shared_from_this<AnimatorStack> {
  public:
    AnimatorStack();
    virtual ~AnimatorStack();
    AnimatorStack(const AnimatorStack&) = delete;
    AnimatorStack& operator=(const AnimatorStack&) = delete;

    /// Appends `item`; null is ignored. An animator added twice moves two frames per tick.
    virtual void add(std::shared_ptr<Animator> item);
    [[nodiscard]] virtual std::int64_t getCount();
    [[nodiscard]] virtual std::vector<std::shared_ptr<Animator>> getItems();
    /// Starts a timer on the calling thread that ticks this. A timer that is already running is left running
    /// as well.
    virtual void start();
    /// Stops the timer and removes all members.
    virtual void stop();
    /// Performs one tick. A tick that finds nothing to move reports the end and stops.
    virtual void animate();
    virtual void reset();

  private:
    friend struct AnimatorInside;

    std::shared_ptr<platform::Timer> _timer;
    const std::unique_ptr<MemberList> _animators;

  public:
    /// Seconds per tick; read by `start`.
    float interval = 0.005F;
    /// Called before each member's frame.
    Callback<AnimatorStack&, Animator&> onAnimation;
    /// Called when a tick has found nothing to move, before the stack stops.
    Callback<AnimatorStack&> onFinished;
    /// Called when a member has arrived and been dropped.
    Callback<AnimatorStack&, Animator&> onRemovedItem;
};

} // namespace tonewright
