// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Gives the rest of the animation engine, its tests and its benchmarks access to the private members of the
// animation classes. Also defines Animator::tick, which is inline because groups call it for thousands of
// animators.
#pragma once

#include "platform/foundation/checked.hpp"
#include "shared/Common/Animator/Animator.hpp"

#include <cstddef>
#include <typeinfo>

namespace tonewright {

/// Performs one frame. The caller must hold a reference to the animator, because a callback may release all
/// others.
inline void Animator::tick() {
    if (_frames < 0) return;
    if (_step < _frames) {
        if (onAnimation) onAnimation(*this, _value);
        _step = platform::checkedAdd<std::int64_t>(_step, 1);
        if (_action == nullptr) platform::fatal(platform::UnexpectedNil);
        _value = _action(*this, _step, _source, _amount, _frames);
        return;
    }
    _value = _destination; // the curve may not reach the destination exactly
    if (looped) {
        if (onLoop) onLoop(*this);
        reverse();
    } else {
        stop();
        if (onFinished) onFinished(*this, _value);
    }
}

struct AnimatorInside {
    // Fields of animators, and of other classes with fields of the same names.
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

    // Fields of groups.
    static auto& currentFrame(auto& group) { return group._currentFrame; }
    static auto& maxFrames(auto& group) { return group._maxFrames; }
    static auto& direction(auto& group) { return group._direction; }
    static auto& suspended(auto& group) { return group._suspended; }
    static auto& animators(auto& group) { return group._animators; }
    static auto& animatedItems(auto& group) { return group._animatedItems; }
    static void advance(auto& sequencer) { sequencer.advance(); }

    // Fields in which groups keep information about their members.
    static std::uint32_t& memberships(Animator& animator) { return animator._memberships; }
    static std::uint32_t memberships(const Animator& animator) { return animator._memberships; }
    static std::uint32_t& placements(Animator& animator) { return animator._placements; }
    static std::uint32_t placements(const Animator& animator) { return animator._placements; }
    static std::uint32_t& timeline(Animator& animator) { return animator._timeline; }
    static void noteClass(Animator& animator) { animator._plain = typeid(animator) == typeid(Animator); }

    /// Performs one frame of a group's member. Calls the virtual function only if the member is of a
    /// subclass.
    static void tick(Animator& member) {
        if (member._plain) {
            member.tick();
        } else {
            member.animate();
        }
    }
    /// Returns whether a group's member is idle. Calls the virtual function only if the member is of a
    /// subclass.
    static bool hasFinished(Animator& member) {
        return member._plain ? member._frames < 0 : member.isFinished();
    }
    /// Prefetches the fields that a frame of `animator` uses, which occupy at most two cache lines.
    static void prefetch(const Animator& animator) {
        __builtin_prefetch(&animator._source, 1);
        __builtin_prefetch(reinterpret_cast<const std::byte*>(&animator.onAnimation + 1) - 1, 1);
    }
};

} // namespace tonewright
