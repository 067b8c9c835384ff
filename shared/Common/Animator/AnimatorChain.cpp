// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/AnimatorChain.hpp"

#include "platform/foundation/checked.hpp"
#include "platform/foundation/console.hpp"
#include "shared/Common/Animator/detail/MemberList.hpp"

#include <utility>

namespace tonewright {

AnimatorChain::AnimatorChain()
    : _animators(std::make_unique<MemberList>()) {}

AnimatorChain::~AnimatorChain() = default;

void AnimatorChain::add(std::shared_ptr<Animator> item) {
    if (item) _animators->append(std::move(item));
}

void AnimatorChain::remove(const std::shared_ptr<Animator>& item) {
    if (!item) return;
    const auto held = item; // `item` may refer to an element of the list
    if (!_animators->removeFirst(*held)) platform::fatal("The animator to remove is not in the chain");
}

void AnimatorChain::removeAll() {
    const auto self = weak_from_this().lock();
    stop();
    _animators->clear();
}

std::int64_t AnimatorChain::getCount() {
    return _animators->count();
}

std::int64_t AnimatorChain::getCurrentIndex() {
    return _currentIndex;
}

std::shared_ptr<Animator> AnimatorChain::getCurrentItem() {
    // Both comparisons are strict, so the first and the last member are never returned.
    if (_currentIndex > 0 && _currentIndex < _animators->count() - 1) return _animators->at(_currentIndex);
    return nullptr;
}

void AnimatorChain::start() {
    auto self = weak_from_this().lock();
    if (!self) platform::fatal("AnimatorChain.start needs a chain that is owned by a shared pointer");
    _timer = platform::Timer::scheduledTimerWithTimeInterval(static_cast<double>(interval), true,
                                                             [self = std::move(self)] { self->animate(); });
}

void AnimatorChain::stop() {
    reset();
}

void AnimatorChain::setBackwards(bool direction) {
    _direction = direction ? -1 : 1;
}

void AnimatorChain::animate() {
    const auto self = weak_from_this().lock(); // a callback may release the chain
    const std::int64_t last = _animators->count() - 1;
    if (last < 0) {
        platform::print("WARNUNG: Es sind keine Animator Objekte definiert.");
        return;
    }
    if (_currentIndex < 0 || _currentIndex > last) _currentIndex = last;
    const std::shared_ptr<Animator> member = _animators->at(_currentIndex);
    if (onAnimation) onAnimation(*this, *member);
    bool isDone = true;
    if (async) {
        member->start();
    } else {
        member->animate();
        isDone = member->isFinished();
    }
    if (isDone) _currentIndex = platform::checkedAdd(_currentIndex, _direction);

    // A chain that runs backwards ends at the first member without playing it.
    const bool atEnd = _direction > 0   ? _currentIndex >= _animators->count()
                       : _direction < 0 ? _currentIndex <= 0
                                        : false;
    if (!atEnd) return;
    if (onFinished) onFinished(*this);
    stop();
}

void AnimatorChain::reset() {
    const auto self = weak_from_this().lock(); // the timer may hold the last other reference
    if (_timer) std::exchange(_timer, nullptr)->invalidate();
    _currentIndex = 0;
}

} // namespace tonewright
