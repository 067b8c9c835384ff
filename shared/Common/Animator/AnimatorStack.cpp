// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "shared/Common/Animator/AnimatorStack.hpp"

#include "shared/Common/Animator/detail/AnimatorInside.hpp"
#include "shared/Common/Animator/detail/MemberList.hpp"

#include <utility>

namespace tonewright {

AnimatorStack::AnimatorStack()
    : _animators(std::make_unique<MemberList>()) {}

AnimatorStack::~AnimatorStack() = default;

void AnimatorStack::add(std::shared_ptr<Animator> item) {
    if (item) _animators->append(std::move(item));
}

std::int64_t AnimatorStack::getCount() {
    return _animators->count();
}

std::vector<std::shared_ptr<Animator>> AnimatorStack::getItems() {
    return _animators->items();
}

void AnimatorStack::start() {
    auto self = weak_from_this().lock();
    if (!self) platform::fatal("AnimatorStack.start needs a stack that is owned by a shared pointer");
    _timer = platform::Timer::scheduledTimerWithTimeInterval(static_cast<double>(interval), true,
                                                             [self = std::move(self)] { self->animate(); });
}

void AnimatorStack::stop() {
    reset();
}

void AnimatorStack::animate() {
    const auto self = weak_from_this().lock(); // a callback may release the stack
    bool animated = false;
    _animators->walk([&](Animator& member, std::size_t position) {
        if (AnimatorInside::hasFinished(member)) return;
        if (onAnimation) onAnimation(*this, member);
        AnimatorInside::tick(member);
        animated = true;
        if (!AnimatorInside::hasFinished(member)) return;
        if (!_animators->removeFirst(member, position)) {
            platform::fatal("A finished animator is not in its stack any more");
        }
        if (onRemovedItem) onRemovedItem(*this, member);
    });
    if (animated) return;
    if (onFinished) onFinished(*this);
    stop();
}

void AnimatorStack::reset() {
    const auto self = weak_from_this().lock(); // the timer may hold the last other reference
    if (_timer) std::exchange(_timer, nullptr)->invalidate();
    _animators->clear();
}

} // namespace tonewright
