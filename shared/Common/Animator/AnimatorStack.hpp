// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Runs animators in parallel with one timer: each tick advances all unfinished members by one frame and drops
// those that have finished. Single-threaded, on the run loop of the thread that calls `start`. A running
// timer keeps the stack alive.
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

    /// Appends `item`. Null is ignored. An animator that is added twice moves two frames per tick.
    virtual void add(std::shared_ptr<Animator> item);
    [[nodiscard]] virtual std::int64_t getCount();
    [[nodiscard]] virtual std::vector<std::shared_ptr<Animator>> getItems();
    /// Starts a timer on the calling thread that calls `animate`. Does not stop a timer that is already
    /// running.
    virtual void start();
    /// Stops the timer and removes all members.
    virtual void stop();
    /// Performs one tick. If there is no unfinished member, calls `onFinished` and stops.
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
    /// Called by a tick without unfinished members, before the stack stops.
    Callback<AnimatorStack&> onFinished;
    /// Called when a member has finished and has been dropped.
    Callback<AnimatorStack&, Animator&> onRemovedItem;
};

} // namespace tonewright
