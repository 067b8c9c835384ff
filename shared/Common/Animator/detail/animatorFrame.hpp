// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The animator's frame, inline for the groups that tick thousands of animators.
#pragma once

#include "platform/foundation/checked.hpp"
#include "shared/Common/Animator/Animator.hpp"

namespace tonewright {

/// Performs one frame. The caller keeps the animator alive: a callback may release every other reference.
inline void Animator::tick() {
    if (_frames < 0) return;
    if (_step < _frames) {
        if (onAnimation) onAnimation(*this, _value);
        _step = platform::checkedAdd<std::int64_t>(_step, 1);
        if (_action == nullptr) platform::fatal(platform::UnexpectedNil);
        _value = _action(*this, _step, _source, _amount, _frames);
        return;
    }
    _value = _destination; // exactly, whatever the curve returned at the last frame
    if (looped) {
        if (onLoop) onLoop(*this);
        reverse();
    } else {
        stop();
        if (onFinished) onFinished(*this, _value);
    }
}

/// Performs one frame as a member of a group, through the overridable operation where something may be
/// overridden.
inline void Animator::tickInGroup() {
    if (_plain) {
        tick();
    } else {
        animate();
    }
}

/// Returns whether a member of a group is idle, in the same way.
inline bool Animator::hasFinished() {
    return _plain ? _frames < 0 : isFinished();
}

} // namespace tonewright
