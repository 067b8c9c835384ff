// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Moves one float from a source to a destination in a whole number of frames, one frame per tick of a timer,
// along an easing curve. Stack, chain and sequencer drive many of them from one timer.
//
// Single-threaded: an animator, its groups and their callbacks live on one thread, the one whose run loop
// runs the timers. A running timer keeps its animator alive.
#pragma once

#include "platform/dispatch/Timer.hpp"
#include "shared/Common/Animator/Callback.hpp"
#include "shared/Common/Animator/Easing.hpp"

#include <atomic>
#include <concepts>
#include <cstdint>
#include <memory>
#include <typeinfo>

namespace tonewright {

class Animator : public std::enable_shared_from_this<Animator> {
  public:
    /// Makes an idle animator. Animators are owned by shared pointers: use std::make_shared, or `create`.
    Animator();
    virtual ~Animator();
    Animator(const Animator&) = delete;
    Animator& operator=(const Animator&) = delete;

    /// Makes an animator of class `Kind` and sets it up, through an override of `setup` where `Kind` has one.
    template <std::derived_from<Animator> Kind = Animator>
    [[nodiscard]] static std::shared_ptr<Kind> create(float sourceValue, float destinationValue,
                                                      std::int64_t frames, float interval = 0.009F,
                                                      EnumEasing type = EnumEasing::EASING_easeNone) {
        auto animator = std::make_shared<Kind>();
        static_cast<Animator&>(*animator).setup(sourceValue, destinationValue, frames, interval, type);
        return animator;
    }

    /// Arms for a movement from `source` to `destination` in `frames` frames of `interval` seconds. No
    /// frames, fewer, or no distance: the first tick arrives. Leaves timer, `looped` and callbacks alone.
    virtual void setup(float source, float destination, std::int64_t frames, float interval = 0.009F,
                       EnumEasing type = EnumEasing::EASING_easeNone);
    /// Arms for the way back.
    virtual void reverse();
    /// Jump to the destination: arm for one frame and tick twice.
    virtual void undo();
    [[nodiscard]] virtual float getDestinationValue();
    [[nodiscard]] virtual float getSourceValue();
    [[nodiscard]] virtual float getValue();
    /// Does one frame: report the value, then compute the next; after the last frame arrive, or turn.
    virtual void animate();
    /// Returns whether the animator is idle: never set up, stopped, or arrived.
    [[nodiscard]] virtual bool isFinished();
    /// Ticks from a timer of the calling thread. A timer that runs already is left running as well.
    virtual void start();
    /// Stops the timer (the one started last) and becomes idle; `looped` is cleared.
    virtual void stop();
    /// Arms again from the source, with the frames given to the last `setup`, straight and at 0.009 seconds.
    virtual void rewind();
    virtual void setType(EnumEasing type);
    /// Sets the seconds per frame; holds from the next `start` on.
    virtual void setInterval(float interval);

    // The curves that overshoot may be replaced by a subclass; the arguments are those of `EasingFunction`.
    virtual float easeInElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                std::int64_t numFrames);
    virtual float easeOutElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                 std::int64_t numFrames);
    virtual float easeInOutElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                   std::int64_t numFrames);
    virtual float easeOutInElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                   std::int64_t numFrames);
    virtual float easeInBack(std::int64_t currentFrame, float sourceValue, float amount,
                             std::int64_t numFrames);
    virtual float easeOutBack(std::int64_t currentFrame, float sourceValue, float amount,
                              std::int64_t numFrames);
    virtual float easeInOutBack(std::int64_t currentFrame, float sourceValue, float amount,
                                std::int64_t numFrames);
    virtual float easeOutInBack(std::int64_t currentFrame, float sourceValue, float amount,
                                std::int64_t numFrames);

    /// How many animators are alive, on all threads.
    inline static std::atomic<std::int64_t> classCount{0};

    /// What an animator calls per frame: the selected curve, bound without owning the animator.
    using Action = float (*)(Animator& animator, std::int64_t currentFrame, float sourceValue, float amount,
                             std::int64_t numFrames);

  private:
    friend class AnimationSequencer;
    friend class AnimatorStack;
    friend class MemberList;
    friend class Timeline;
    friend struct AnimatorInspection; // lets tests and benchmarks look at the fields

    void reset();
    void tick();
    void tickInGroup();
    bool hasFinished();
    void assignType(EnumEasing type);
    void noteClass() { _plain = typeid(*this) == typeid(Animator); }

    std::int64_t _startFrame = 0; // in the sequencer's time line
    std::int64_t _frameCount = 0; // as given to the last setup
    std::shared_ptr<platform::Timer> _timer;
    float _source = 0;
    float _value = 0;
    float _destination = 0;
    float _amount = 0;
    std::int64_t _frames = -1; // -1 when idle
    std::int64_t _step = 0;
    float _interval = 0.005F; // seconds
    Action _action;
    EnumEasing _type = EnumEasing::EASING_easeNone;

  public:
    /// Turn at each end instead of finishing.
    bool looped = false;

  private:
    bool _plain = false; // of this very class, nothing overridden; known once a member of a group
    // What the groups remember of their members, so that they need not search for them; two more below.
    std::uint32_t _memberships = 0; // entries in the member lists of all groups

  public:
    /// Called with each frame's value before the next one is computed.
    Callback<Animator&, float> onAnimation;
    /// Called on arrival with the destination.
    Callback<Animator&, float> onFinished;
    /// Called at each turn of a looped animator.
    Callback<Animator&> onLoop;

  private:
    std::uint32_t _placements = 0; // entries in the time lines of all sequencers
    std::uint32_t _timeline = 0;   // the one time line of all placements, or Timeline::Several
};

} // namespace tonewright
