// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads (and where a test must set the scene, writes) the fields of the animation classes, and of their
// literal model, which has the same names.
#pragma once

#include "shared/Common/Animator/AnimationSequencer.hpp"
#include "shared/Common/Animator/AnimatorChain.hpp"
#include "shared/Common/Animator/AnimatorStack.hpp"
#include "shared/Common/Animator/Impulse.hpp"

namespace tonewright {

struct AnimatorInspection {
    static auto& startFrame(auto& object) { return object._startFrame; }
    static auto& frameCount(auto& object) { return object._frameCount; }
    static auto& frames(auto& object) { return object._frames; }
    static auto& step(auto& object) { return object._step; }
    static auto& value(auto& object) { return object._value; }
    static auto& source(auto& object) { return object._source; }
    static auto& destination(auto& object) { return object._destination; }
    static auto& amount(auto& object) { return object._amount; }
    static auto& interval(auto& object) { return object._interval; }
    static auto& type(auto& object) { return object._type; }
    static auto& action(auto& object) { return object._action; }
    static auto& timer(auto& object) { return object._timer; }
    static auto& currentFrame(auto& object) { return object._currentFrame; }
    static auto& maxFrames(auto& object) { return object._maxFrames; }
    static auto& direction(auto& object) { return object._direction; }
    static auto& suspended(auto& object) { return object._suspended; }

    using Members = std::vector<std::shared_ptr<Animator>>;
    static Members members(AnimatorStack& stack) { return stack._animators.items(); }
    static Members members(AnimatorChain& chain) { return chain._animators.items(); }
    static Members members(AnimationSequencer& sequencer) { return sequencer._animators.items(); }
    static Members playing(AnimationSequencer& sequencer) { return sequencer._animatedItems.items(); }
    static const auto& members(auto& literal) { return literal._animators; }
    static const auto& playing(auto& literal) { return literal._animatedItems; }
};

} // namespace tonewright
