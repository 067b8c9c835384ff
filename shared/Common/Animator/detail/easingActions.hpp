// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Maps the kind of movement to what an animator calls.
#pragma once

#include "shared/Common/Animator/Animator.hpp"

namespace tonewright {

/// Returns the action of `type` for an animator of the base class (`plain`: the formulas themselves) or of a
/// subclass (Elastic and Back through the overridable functions). Unknown types move linearly.
[[nodiscard]] Animator::Action easingAction(EnumEasing type, bool plain) noexcept;

} // namespace tonewright
