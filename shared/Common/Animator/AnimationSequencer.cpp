// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/AnimationSequencer.hpp"

#include "platform/foundation/checked.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Animator/detail/AnimatorInside.hpp"
#include "shared/Common/Animator/detail/MemberList.hpp"
#include "shared/Common/Animator/detail/Timeline.hpp"

#include <utility>

namespace tonewright {

AnimationSequencer::AnimationSequencer()
    : _animators(std::make_unique<Timeline>())
    , _animatedItems(std::make_unique<MemberList>()) {}

AnimationSequencer::~AnimationSequencer() = default;

void AnimationSequencer::add(std::shared_ptr<Animator> item, std::int64_t at) {
    if (!item) {
        platform::print("FEHLER: Das Animator Objekt ist ungültig.");
        return;
    }
    _animators->add(std::move(item), at);
    calculateFrames();
}

void AnimationSequencer::remove(const std::shared_ptr<Animator>& item) {
    const auto held = item; // `item` may refer to an element of the list
    if (held && !_animators->remove(*held)) platform::fatal("The animator to remove is not in the sequencer");
    calculateFrames();
}

void AnimationSequencer::removeAll() {
    _animators->clear();
}

std::int64_t AnimationSequencer::getCount() {
    return _animators->count();
}

std::int64_t AnimationSequencer::getCurrentCount() {
    return _animatedItems->count();
}

std::int64_t AnimationSequencer::getCurrentFrame() {
    return _currentFrame;
}

std::int64_t AnimationSequencer::getCurrentIndex() {
    return _currentIndex;
}

void AnimationSequencer::start() {
    auto self = weak_from_this().lock();
    if (!self) {
        platform::fatal("AnimationSequencer.start needs a sequencer that is owned by a shared pointer");
    }
    _timer = platform::Timer::scheduledTimerWithTimeInterval(static_cast<double>(interval), true,
                                                             [self = std::move(self)] { self->advance(); });
}

void AnimationSequencer::advance() {
    _currentFrame = platform::checkedAdd<std::int64_t>(_currentFrame, 1);
    animate();
}

void AnimationSequencer::stop() {
    reset();
}

void AnimationSequencer::pause() {
    _suspended = true;
}

void AnimationSequencer::continue_() {
    _suspended = false;
}

void AnimationSequencer::rewind() {
    for (const auto& member : _animators->items()) member->rewind();
}

void AnimationSequencer::seek(std::int64_t to) {
    _currentFrame = to;
    _currentIndex = 0;
    if (_currentFrame > _maxFrames) {
        stop();
        return;
    }
    for (const auto& member : _animators->items()) {
        if (AnimatorInside::startFrame(*member) < _currentFrame) {
            member->stop();
            _currentIndex = platform::checkedAdd<std::int64_t>(_currentIndex, 1);
        } else {
            member->rewind();
        }
    }
}

void AnimationSequencer::animate() {
    if (_suspended) return;
    if (_animators->count() == 0) {
        platform::print("WARNUNG: Es sind keine Animator Objekte definiert.");
        return;
    }
    const auto self = weak_from_this().lock(); // a callback may release the sequencer
    findAnimators();
    _animatedItems->walk([&](Animator& member, std::size_t position) {
        if (onAnimation) onAnimation(*this, member);
        AnimatorInside::tick(member);
        if (AnimatorInside::hasFinished(member) && !_animatedItems->removeFirst(member, position)) {
            platform::fatal("A finished animator is not in play any more");
        }
    });
    if (_currentFrame < _maxFrames) return;
    if (onFinished) onFinished(*this);
    stop();
}

void AnimationSequencer::findAnimators() {
    const std::int64_t count = _animators->count();
    if (_currentIndex > count) platform::fatal("The sequencer's position lies behind its last member");
    _animators->putInOrder();
    for (std::int64_t i = _currentIndex; i < count; ++i) {
        if (i >= _animators->count()) { // an overridden isFinished has removed members
            platform::print("ERROR: Animationsobjekt is undefiniert!");
            return;
        }
        if (!_animators->isInOrder()) _animators->putInOrder();
        if (_animators->liesAhead(i, _currentFrame)) return;
        const auto member = _animators->at(i);
        if (_currentFrame >= AnimatorInside::startFrame(*member) && !AnimatorInside::hasFinished(*member)) {
            _currentIndex = i;
            scheduleItem(member);
        }
    }
}

void AnimationSequencer::scheduleItem(const std::shared_ptr<Animator>& item) {
    if (!item) platform::fatal(platform::UnexpectedNil);
    if (!_animatedItems->contains(*item)) _animatedItems->append(item);
}

void AnimationSequencer::calculateFrames() {
    _maxFrames = _animators->latestEnd(_maxFrames);
}

void AnimationSequencer::reset() {
    const auto self = weak_from_this().lock(); // the timer may hold the last other reference
    if (_timer) std::exchange(_timer, nullptr)->invalidate();
    _currentIndex = 0;
    _currentFrame = 0;
}

} // namespace tonewright
