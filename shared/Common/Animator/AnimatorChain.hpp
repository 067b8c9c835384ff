// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Plays animators one after the other with one timer, forwards or backwards. In asynchronous mode, each tick
// starts the own timer of one member. Members that have finished are idle, and the chain skips them the next
// time unless they are prepared again (`Animator::rewind`). Single-threaded, on the run loop of the thread
// that calls `start`. A running timer keeps the chain alive.
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

    /// Appends `item`. Null is ignored.
    virtual void add(std::shared_ptr<Animator> item);
    /// Removes the first entry of `item` without changing the current index. Null is ignored. It is a fatal
    /// error if `item` is not a member.
    virtual void remove(const std::shared_ptr<Animator>& item);
    /// Stops the chain and removes all members.
    virtual void removeAll();
    [[nodiscard]] virtual std::int64_t getCount();
    [[nodiscard]] virtual std::int64_t getCurrentIndex();
    /// Returns the current member, or null if it is the first or the last one.
    [[nodiscard]] virtual std::shared_ptr<Animator> getCurrentItem();
    /// Starts a timer on the calling thread that calls `animate`. Does not stop a timer that is already
    /// running.
    virtual void start();
    /// Stops the timer and returns to the first member. Members keep their state.
    virtual void stop();
    /// Lets the chain run backwards (true) or forwards (false) from the next step on.
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
    /// True: each tick starts the own timer of one member. False: members are played one after the other.
    bool async = false;
    /// Called on every tick with the current member, before the member is advanced or started.
    Callback<AnimatorChain&, Animator&> onAnimation;
    /// Called at the end of the chain, before it stops.
    Callback<AnimatorChain&> onFinished;
};

} // namespace tonewright
