// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A timeline of animators. Each is placed at a start frame; a timer advances the frame, and every tick starts
// the members whose start frame has come, advances the running ones by a frame and drops those that have
// arrived. Single-threaded, on the run loop of the thread that calls `start`; a running timer keeps the
// sequencer alive.
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

    /// Places `item`, which should be set up by now, at frame `at`. The start frame is written into the
    /// animator: if it is placed twice, or in two sequencers, the last start frame counts.
    virtual void add(std::shared_ptr<Animator> item, std::int64_t at);
    /// Removes the first placement of `item`; null is ignored, an animator that is not a member is fatal. If
    /// it is running it continues to run.
    virtual void remove(const std::shared_ptr<Animator>& item);
    /// Removes all members. Running ones continue to run, and the length of the timeline stays.
    virtual void removeAll();
    [[nodiscard]] virtual std::int64_t getCount();
    /// Returns the number of running members.
    [[nodiscard]] virtual std::int64_t getCurrentCount();
    [[nodiscard]] virtual std::int64_t getCurrentFrame();
    /// Returns the position of the member that was started last.
    [[nodiscard]] virtual std::int64_t getCurrentIndex();
    /// Starts a timer on the calling thread that advances the frame from where it is. A timer that is already
    /// running is left running as well.
    virtual void start();
    /// Stops the timer and goes back to frame 0. Running members keep their state.
    virtual void stop();
    /// Pauses all movement. The frame still advances, so members whose start frame passes meanwhile start
    /// late.
    virtual void pause();
    virtual void continue_();
    /// Rewinds every member; the sequencer's frame stays.
    virtual void rewind();
    /// Goes to frame `to`: members that start before it are stopped, the others rewound. A frame beyond the
    /// end stops the sequencer.
    virtual void seek(std::int64_t to);
    /// Performs one tick at the present frame.
    virtual void animate();
    /// Extends the length of the timeline to the latest end of a member.
    virtual void calculateFrames();

    /// Does what each firing of the timer does: advances the frame by one, then does the work of a tick. A
    /// program with a clock of its own calls it on each of its ticks instead of calling `start`.
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
