// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A time line of animators. Each is placed at a start frame; a timer advances the frame, and every tick
// brings into play the members whose start frame has come, advances those in play by a frame and drops those
// that have arrived. Single-threaded, on the run loop of the thread that calls `start`; a running timer keeps
// the sequencer alive.
#pragma once

#include "shared/Common/Animator/MemberList.hpp"
#include "shared/Common/Animator/Timeline.hpp"

namespace tonewright {

class AnimationSequencer : public std::enable_shared_from_this<AnimationSequencer> {
  public:
    AnimationSequencer() = default;
    virtual ~AnimationSequencer() = default;
    AnimationSequencer(const AnimationSequencer&) = delete;
    AnimationSequencer& operator=(const AnimationSequencer&) = delete;

    /// Places `item`, which should be set up by now, at frame `at`. The start frame is written into the
    /// animator: one that is placed twice, or in two sequencers, has the start frame given last.
    virtual void add(std::shared_ptr<Animator> item, std::int64_t at);
    /// Takes the first placement of `item` out, if there is an item; one that is no member is fatal. If it is
    /// in play it plays on.
    virtual void remove(const std::shared_ptr<Animator>& item);
    /// Lets go of all members. Those in play play on, and the length of the time line stays.
    virtual void removeAll();
    [[nodiscard]] virtual std::int64_t getCount();
    /// Returns the number of members in play.
    [[nodiscard]] virtual std::int64_t getCurrentCount();
    [[nodiscard]] virtual std::int64_t getCurrentFrame();
    /// Returns the position of the member that came into play last.
    [[nodiscard]] virtual std::int64_t getCurrentIndex();
    /// Advances and tick from a timer of the calling thread, from the present frame on. A timer that runs
    /// already is left running as well.
    virtual void start();
    /// Stops the timer and goes back to frame 0. Members in play stay in play.
    virtual void stop();
    /// Holds all movement. The frame still advances, so that what is passed comes into play late.
    virtual void pause();
    virtual void continue_();
    /// Rewinds every member; the sequencer's frame stays.
    virtual void rewind();
    /// Goes to frame `to`: members that start before it are stopped, the others rewound. Beyond the end:
    /// stop.
    virtual void seek(std::int64_t to);
    /// Does the work of one tick at the present frame.
    virtual void animate();
    /// Lets the length of the time line grow to the latest end of a member.
    virtual void calculateFrames();

  private:
    friend struct AnimatorInspection;

    void advance(); // what each firing of the timer does
    void findAnimators();
    void scheduleItem(const std::shared_ptr<Animator>& item);
    void reset();

    std::shared_ptr<platform::Timer> _timer;
    std::int64_t _currentFrame = 0;
    std::int64_t _maxFrames = 0;
    Timeline _animators;
    MemberList _animatedItems; // in play, in the order of coming into play
    std::int64_t _currentIndex = 0;
    bool _suspended = false;

  public:
    /// Seconds per frame; read by `start`.
    float interval = 0.005F;
    /// Called for each member in play, before its frame.
    Callback<AnimationSequencer&, Animator&> onAnimation;
    /// Called when the time line has been run to its end, before the sequencer stops.
    Callback<AnimationSequencer&> onFinished;
};

} // namespace tonewright
