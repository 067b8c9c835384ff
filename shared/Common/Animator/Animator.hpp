// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Moves a float from a source value to a destination value along an easing curve, in a fixed number of frames
// with one frame per tick of a timer. Stacks, chains and sequencers (the groups) drive many animators with
// one timer.
//
// Single-threaded: an animator, its groups and their callbacks must all be used on the thread whose run loop
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
    /// Creates an idle animator. Animators must be owned by shared pointers: use std::make_shared or
    /// `create`.
    Animator();
    virtual ~Animator();
    Animator(const Animator&) = delete;
    Animator& operator=(const Animator&) = delete;

    /// Creates an animator of class `Kind` and calls its `setup`, which may be overridden.
    template <std::derived_from<Animator> Kind = Animator>
    [[nodiscard]] static std::shared_ptr<Kind> create(float sourceValue, float destinationValue,
                                                      std::int64_t frames, float interval = 0.009F,
                                                      EnumEasing type = EnumEasing::EASING_easeNone) {
        auto animator = std::make_shared<Kind>();
        static_cast<Animator&>(*animator).setup(sourceValue, destinationValue, frames, interval, type);
        return animator;
    }

    /// Prepares a movement from `source` to `destination` in `frames` frames of `interval` seconds. If
    /// `frames` is 0 or less, or the two values are equal, the first tick completes the movement. Does not
    /// change the timer, `looped` or the callbacks.
    virtual void setup(float source, float destination, std::int64_t frames, float interval = 0.009F,
                       EnumEasing type = EnumEasing::EASING_easeNone);
    /// Prepares the movement in the opposite direction.
    virtual void reverse();
    /// Jumps to the destination: prepares a movement of one frame and ticks twice.
    virtual void undo();
    [[nodiscard]] virtual float getDestinationValue();
    [[nodiscard]] virtual float getSourceValue();
    [[nodiscard]] virtual float getValue();
    /// Performs one frame: reports the current value and computes the next one. After the last frame, the
    /// movement is finished or, if `looped` is true, reversed.
    virtual void animate();
    /// Returns whether the animator is idle: not set up yet, stopped or finished.
    [[nodiscard]] virtual bool isFinished();
    /// Starts a timer on the calling thread that calls `animate`. Does not stop a timer that is already
    /// running.
    virtual void start();
    /// Stops the timer that was started last, makes the animator idle and clears `looped`.
    virtual void stop();
    /// Prepares the movement again with the number of frames of the last `setup`, but with the defaults of
    /// `setup` for the interval and the easing curve.
    virtual void rewind();
    virtual void setType(EnumEasing type);
    /// Sets the seconds per frame from the next `start` on.
    virtual void setInterval(float interval);

    // Subclasses can override the curves that overshoot. The arguments are those of `EasingFunction`.
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

    /// The number of existing animators on all threads.
    inline static std::atomic<std::int64_t> classCount{0};

    /// A function that computes a frame's value with the selected curve. It does not own the animator.
    using Action = float (*)(Animator& animator, std::int64_t currentFrame, float sourceValue, float amount,
                             std::int64_t numFrames);

  private:
    friend struct AnimatorInside;

    void reset();
    void tick();
    void assignType(EnumEasing type);

    std::int64_t _startFrame = 0; // on the timeline of the sequencer
    std::int64_t _frameCount = 0; // argument of the last `setup`
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
    /// True: reverses the movement at each end instead of finishing.
    bool looped = false;

  private:
    bool _plain = false; // the object is of this class, not of a subclass; set when it is added to a group
    // Groups use the next field, and the last two below, to avoid searches for members.
    std::uint32_t _memberships = 0; // entries in the member lists of all groups

  public:
    /// Called with each frame's value before the next one is computed.
    Callback<Animator&, float> onAnimation;
    /// Called with the destination value when the movement is finished.
    Callback<Animator&, float> onFinished;
    /// Called each time a looped animator reverses its movement.
    Callback<Animator&> onLoop;

  private:
    std::uint32_t _placements = 0; // entries in the timelines of all sequencers
    std::uint32_t _timeline = 0;   // the number of the only timeline, or Timeline::Several
};

} // namespace tonewright
