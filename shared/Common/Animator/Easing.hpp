// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The catalogue of easing curves: ten families in four shapes, and the straight line. Pure functions of their
// arguments, in single precision, with the same bits on every machine and compiler; any thread.
//
// docs/EASING.md shows them all and says what each is for.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tonewright {

/// The kinds of movement an animator can have.
enum class EnumEasing : std::int64_t {
    EASING_easeNone = 0,
    EASING_easeInQuad,
    EASING_easeOutQuad,
    EASING_easeInOutQuad,
    EASING_easeOutInQuad,
    EASING_easeInCubic,
    EASING_easeOutCubic,
    EASING_easeInOutCubic,
    EASING_easeOutInCubic,
    EASING_easeInQuart,
    EASING_easeOutQuart,
    EASING_easeInOutQuart,
    EASING_easeOutInQuart,
    EASING_easeInQuint,
    EASING_easeOutQuint,
    EASING_easeInOutQuint,
    EASING_easeOutInQuint,
    EASING_easeInSine,
    EASING_easeOutSine,
    EASING_easeInOutSine,
    EASING_easeOutInSine,
    EASING_easeInExpo,
    EASING_easeOutExpo,
    EASING_easeInOutExpo,
    EASING_easeOutInExpo,
    EASING_easeInCirc,
    EASING_easeOutCirc,
    EASING_easeInOutCirc,
    EASING_easeOutInCirc,
    EASING_easeInElastic,
    EASING_easeOutElastic,
    EASING_easeInOutElastic,
    EASING_easeOutInElastic,
    EASING_easeInBack,
    EASING_easeOutBack,
    EASING_easeInOutBack,
    EASING_easeOutInBack,
    EASING_easeInBounce,
    EASING_easeOutBounce,
    EASING_easeInOutBounce,
    EASING_easeOutInBounce,
    EASING_easeLast, ///< the end of the list; moves like EASING_easeNone
};

/// Returns the kind whose raw value is `rawValue` (0 to 41), or none.
[[nodiscard]] std::optional<EnumEasing> easingFromRawValue(std::int64_t rawValue) noexcept;

/// Returns the name of the function that a kind selects ("easeInQuad"); "easeNone" for an unknown kind.
[[nodiscard]] std::string_view easingName(EnumEasing type) noexcept;

/// Returns the value at frame `currentFrame` of a movement from `sourceValue` to `sourceValue + amount` in
/// `numFrames` frames. A `numFrames` of 0 divides by zero: the result is infinite or NaN unless a test of the
/// frame comes first. In the OutIn functions an overflow of `2 * currentFrame`, and in the Bounce functions
/// frame numbers that leave the 64-bit range, are fatal.
using EasingFunction = float (*)(std::int64_t currentFrame, float sourceValue, float amount,
                                 std::int64_t numFrames);

/// Returns the function that a kind selects; `easeNone` for the end marker and any unknown value.
[[nodiscard]] EasingFunction easingFunction(EnumEasing type) noexcept;

} // namespace tonewright
