// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/Animator.hpp"

#include "shared/Common/Animator/detail/AnimatorInside.hpp"
#include "shared/Common/Animator/detail/Timeline.hpp"
#include "shared/Common/Animator/detail/easingActions.hpp"
#include "shared/Common/Animator/detail/easingFormulas.hpp"

#include <limits>
#include <typeinfo>
#include <utility>

namespace tonewright {

Animator::Animator()
    : _action(easingAction(EnumEasing::EASING_easeNone, true)) {
    using Limits = std::numeric_limits<std::int64_t>;
    if (classCount.fetch_add(1, std::memory_order_relaxed) == Limits::max()) {
        platform::fatal("Arithmetic overflow in the number of animators");
    }
}

Animator::~Animator() {
    using Limits = std::numeric_limits<std::int64_t>;
    if (classCount.fetch_sub(1, std::memory_order_relaxed) == Limits::min()) {
        platform::fatal("Arithmetic overflow in the number of animators");
    }
}

void Animator::setup(float source, float destination, std::int64_t frames, float interval, EnumEasing type) {
    const std::int64_t framesBefore = _frames;
    _source = source;
    _destination = destination;
    _value = _source;
    _amount = _destination - _source;
    _frames = frames;
    _frameCount = _frames; // not clamped, because rewind uses the requested number
    _step = 0;
    _interval = interval;
    assignType(type);
    if (_frames < 0) _frames = 0;
    if (_amount == 0) _frames = 0;
    if (_placements > 0 && _frames > framesBefore) Timeline::lengthChanged();
}

void Animator::reverse() {
    setup(_destination, _source, _frames, _interval, _type);
}

void Animator::undo() {
    const auto self = weak_from_this().lock(); // the callback of the first tick may release this
    _frames = 1;
    _step = 0;
    if (_placements > 0) Timeline::lengthChanged();
    setup(_source, _destination, 1);
    animate();
    animate();
}

float Animator::getDestinationValue() {
    return _destination;
}

float Animator::getSourceValue() {
    return _source;
}

float Animator::getValue() {
    return _value;
}

void Animator::animate() {
    const auto self = weak_from_this().lock(); // a callback may release this
    tick();
}

bool Animator::isFinished() {
    return _frames < 0;
}

void Animator::start() {
    auto self = weak_from_this().lock();
    if (!self) platform::fatal("Animator.start needs an animator that is owned by a shared pointer");
    _timer = platform::Timer::scheduledTimerWithTimeInterval(static_cast<double>(_interval), true,
                                                             [self = std::move(self)] { self->animate(); });
}

void Animator::stop() {
    if (_timer) {
        const auto self = weak_from_this().lock(); // the timer may hold the last other reference
        std::exchange(_timer, nullptr)->invalidate();
        reset();
    } else {
        reset();
    }
}

void Animator::rewind() {
    setup(_source, _destination, _frameCount);
}

void Animator::setType(EnumEasing type) {
    assignType(type);
}

void Animator::setInterval(float interval) {
    _interval = interval;
}

void Animator::reset() {
    _step = 0;
    _frames = -1;
    looped = false;
    // The smallest start frame plus -1 frames overflows. The next calculation of the length reports that.
    if (_placements > 0 && _startFrame == std::numeric_limits<std::int64_t>::min()) Timeline::lengthChanged();
}

void Animator::assignType(EnumEasing type) {
    _type = type;
    _action = easingAction(type, typeid(*this) == typeid(Animator));
}

float Animator::easeInElastic(std::int64_t currentFrame, float sourceValue, float amount,
                              std::int64_t numFrames) {
    return easing::easeInElastic(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeOutElastic(std::int64_t currentFrame, float sourceValue, float amount,
                               std::int64_t numFrames) {
    return easing::easeOutElastic(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeInOutElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                 std::int64_t numFrames) {
    return easing::easeInOutElastic(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeOutInElastic(std::int64_t currentFrame, float sourceValue, float amount,
                                 std::int64_t numFrames) {
    return easing::outIn(
        currentFrame, sourceValue, amount, numFrames, [this](auto... a) { return easeOutElastic(a...); },
        [this](auto... a) { return easeInElastic(a...); });
}

float Animator::easeInBack(std::int64_t currentFrame, float sourceValue, float amount,
                           std::int64_t numFrames) {
    return easing::easeInBack(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeOutBack(std::int64_t currentFrame, float sourceValue, float amount,
                            std::int64_t numFrames) {
    return easing::easeOutBack(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeInOutBack(std::int64_t currentFrame, float sourceValue, float amount,
                              std::int64_t numFrames) {
    return easing::easeInOutBack(currentFrame, sourceValue, amount, numFrames);
}

float Animator::easeOutInBack(std::int64_t currentFrame, float sourceValue, float amount,
                              std::int64_t numFrames) {
    return easing::outIn(
        currentFrame, sourceValue, amount, numFrames, [this](auto... a) { return easeOutBack(a...); },
        [this](auto... a) { return easeInBack(a...); });
}

} // namespace tonewright
