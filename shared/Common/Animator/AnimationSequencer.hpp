// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A timeline on which animators are placed at start frames. A timer advances the current frame. Each tick
// starts the members whose start frame has been reached, advances all running members by one frame, and drops
// the finished ones. Single-threaded, on the run loop of the thread that calls `start`. A running timer keeps
// the sequencer alive.
#pragma once

#include "shared/Common/Animator/Animator.hpp"

#include <cstdint>
#include <memory>

namespace tonewright {

class MemberList;
class Timeline;

class AnimationSequencer : public std::enable_shared_from_this<AnimationSequencer> {
  public:
    AnimationSequencer();
    virtual ~AnimationSequencer();
    AnimationSequencer(const AnimationSequencer&) = delete;
    AnimationSequencer& operator=(const AnimationSequencer&) = delete;

    /// Places `item` at frame `at`. Call `setup` of the animator before. The start frame is stored in the
    /// animator: if the animator is placed twice, or in two sequencers, the last start frame applies.
    virtual void add(std::shared_ptr<Animator> item, std::int64_t at);
    /// Removes the first placement of `item`, which continues to run if it is running. Null is ignored. It is
    /// a fatal error if `item` is not a member.
    virtual void remove(const std::shared_ptr<Animator>& item);
    /// Removes all members. Running members continue to run, and the length of the timeline does not change.
    virtual void removeAll();
    [[nodiscard]] virtual std::int64_t getCount();
    /// Returns the number of running members.
    [[nodiscard]] virtual std::int64_t getCurrentCount();
    [[nodiscard]] virtual std::int64_t getCurrentFrame();
    /// Returns the index of the member that was started last.
    [[nodiscard]] virtual std::int64_t getCurrentIndex();
    /// Starts a timer on the calling thread that advances the current frame. Does not stop a timer that is
    /// already running.
    virtual void start();
    /// Stops the timer and sets the current frame to 0. Running members keep their state.
    virtual void stop();
    /// Pauses all movement. The current frame still advances, so members whose start frame passes meanwhile
    /// start late.
    virtual void pause();
    virtual void continue_();
    /// Rewinds all members. The current frame does not change.
    virtual void rewind();
    /// Sets the current frame to `to`, stops the members that start before it and rewinds the others. A frame
    /// beyond the end stops the sequencer.
    virtual void seek(std::int64_t to);
    /// Performs one tick without advancing the current frame.
    virtual void animate();
    /// Extends the timeline to the latest end of a member.
    virtual void calculateFrames();

    /// Advances the current frame by one and performs a tick, as the timer does. A program with its own clock
    /// calls this on every tick of the clock instead of calling `start`.
    void advance();

  private:
    friend struct AnimatorInside;

    void findAnimators();
    void scheduleItem(const std::shared_ptr<Animator>& item);
    void reset();

    std::shared_ptr<platform::Timer> _timer;
    std::int64_t _currentFrame = 0;
    std::int64_t _maxFrames = 0;
    const std::unique_ptr<Timeline> _animators;
    const std::unique_ptr<MemberList> _animatedItems; // running members, in the order of their start
    std::int64_t _currentIndex = 0;
    bool _suspended = false;

  public:
    /// Seconds per frame; read by `start`.
    float interval = 0.005F;
    /// Called for each running member, before its frame.
    Callback<AnimationSequencer&, Animator&> onAnimation;
    /// Called when the timeline has reached its end, before the sequencer stops.
    Callback<AnimationSequencer&> onFinished;
};

} // namespace tonewright
