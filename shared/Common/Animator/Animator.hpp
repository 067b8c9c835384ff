// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Moves one float from a source to a destination in a whole number of frames, one frame per tick of a timer,
// along an easing curve. Stack, chain and sequencer drive many of them from one timer.
//
// Single-threaded: an animator, its groups and their callbacks live on one thread, the one whose run loop
// runs the timers. A running timer keeps its animator alive.
#pragma once

#include "platform/dispatch/Timer.hpp"
#include "shared/Common/Animator/Easing.hpp"
#include "shared/Common/Animator/detail/Callback.hpp"

#include <atomic>
#include <concepts>
#include <cstdint>
#include <memory>

namespace tonewright {

class Animator : public std::enable_shared_from_this<Animator> {
  public:
    /// Creates an idle animator. Animators are owned by shared pointers: use std::make_shared, or `create`.
    Animator();
    virtual ~Animator();
    Animator(const Animator&) = delete;
    Animator& operator=(const Animator&) = delete;

    /// Creates an animator of class `Kind` and sets it up, through an override of `setup` where `Kind` has
    /// one.
    template <std::derived_from<Animator> Kind = Animator>
    [[nodiscard]] static std::shared_ptr<Kind> create(float sourceValue, float destinationValue,
                                                      std::int64_t frames, float interval = 0.009F,
                                                      EnumEasing type = EnumEasing::EASING_easeNone) {
        auto animator = std::make_shared<Kind>();
        static_cast<Animator&>(*animator).setup(sourceValue, destinationValue, frames, interval, type);
        return animator;
    }

    /// Prepares a movement from `source` to `destination` in `frames` frames of `interval` seconds. With no
    /// frames, a negative number or no distance, the first tick arrives. Leaves timer, `looped` and callbacks
    /// alone.
    virtual void setup(float source, float destination, std::int64_t frames, float interval = 0.009F,
                       EnumEasing type = EnumEasing::EASING_easeNone);
    /// Prepares the movement back.
    virtual void reverse();
    /// Jumps to the destination: prepares a movement of one frame and ticks twice.
    virtual void undo();
    [[nodiscard]] virtual float getDestinationValue();
    [[nodiscard]] virtual float getSourceValue();
    [[nodiscard]] virtual float getValue();
    /// Performs one frame: reports the value, then computes the next; after the last frame it arrives, or
    /// turns.
    virtual void animate();
    /// Returns whether the animator is idle: never set up, stopped, or arrived.
    [[nodiscard]] virtual bool isFinished();
    /// Starts a timer on the calling thread that ticks this. A timer that is already running is left running
    /// as well.
    virtual void start();
    /// Stops the timer (the one started last) and becomes idle; clears `looped`.
    virtual void stop();
    /// Prepares the movement again from the source, with the frames passed to the last `setup`, linear and at
    /// 0.009 seconds.
    virtual void rewind();
    virtual void setType(EnumEasing type);
    /// Sets the seconds per frame; takes effect at the next `start`.
    virtual void setInterval(float interval);

    // The curves that overshoot can be overridden; the arguments are those of `EasingFunction`.
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

    /// The number of live animators, on all threads.
    inline static std::atomic<std::int64_t> classCount{0};

    /// What an animator calls per frame: the selected curve, bound without owning the animator.
    using Action = float (*)(Animator& animator, std::int64_t currentFrame, float sourceValue, float amount,
                             std::int64_t numFrames);

  private:
    friend struct AnimatorInside;

    void reset();
    void tick();
    void assignType(EnumEasing type);

    std::int64_t _startFrame = 0; // in the sequencer's timeline
    std::int64_t _frameCount = 0; // as passed to the last setup
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
    /// Turns at each end instead of finishing.
    bool looped = false;

  private:
    bool _plain = false; // exactly this class, nothing overridden; known once it is a member of a group
    // What groups remember about their members to avoid searching for them; two more below.
    std::uint32_t _memberships = 0; // entries in the member lists of all groups

  public:
    /// Called with each frame's value before the next one is computed.
    Callback<Animator&, float> onAnimation;
    /// Called on arrival with the destination.
    Callback<Animator&, float> onFinished;
    /// Called at each turn of a looped animator.
    Callback<Animator&> onLoop;

  private:
    std::uint32_t _placements = 0; // entries in the timelines of all sequencers
    std::uint32_t _timeline = 0;   // the one timeline of all placements, or Timeline::Several
};

} // namespace tonewright
