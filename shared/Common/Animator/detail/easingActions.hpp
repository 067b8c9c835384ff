// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Selects the function that an animator calls for its easing curve.
#pragma once

#include "shared/Common/Animator/Animator.hpp"

namespace tonewright {

/// Returns the action for the curve `type`. With `plain`, for animators of the base class, the action calls
/// the formula directly; otherwise it calls the virtual functions for Elastic and Back. Unknown curves are
/// linear.
[[nodiscard]] Animator::Action easingAction(EnumEasing type, bool plain) noexcept;

} // namespace tonewright
