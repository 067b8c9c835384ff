// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Reads the private fields of the animation classes, and sets those that a test needs set. The fields of the
// literal model have the same names.
#pragma once

#include "shared/Common/Animator/AnimationSequencer.hpp"
#include "shared/Common/Animator/AnimatorChain.hpp"
#include "shared/Common/Animator/AnimatorStack.hpp"
#include "shared/Common/Animator/Impulse.hpp"
#include "shared/Common/Animator/detail/AnimatorInside.hpp"
#include "shared/Common/Animator/detail/MemberList.hpp"
#include "shared/Common/Animator/detail/Timeline.hpp"

namespace tonewright {

struct AnimatorInspection : AnimatorInside {
    using Members = std::vector<std::shared_ptr<Animator>>;
    static Members members(AnimatorStack& stack) { return animators(stack)->items(); }
    static Members members(AnimatorChain& chain) { return animators(chain)->items(); }
    static Members members(AnimationSequencer& sequencer) { return animators(sequencer)->items(); }
    static Members playing(AnimationSequencer& sequencer) { return animatedItems(sequencer)->items(); }
    static const auto& members(auto& literal) { return literal._animators; }
    static const auto& playing(auto& literal) { return literal._animatedItems; }
};

} // namespace tonewright
