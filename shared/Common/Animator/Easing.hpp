// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The catalogue of easing curves: ten families in four shapes, and the straight line. All are pure functions
// in single precision, whose results have the same bits on every machine and with every compiler. Any thread.
//
// docs/EASING.md shows all curves and their uses.
#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace tonewright {

/// The easing curves.
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
    EASING_easeLast, ///< marks the end of the list; the same curve as EASING_easeNone
};

/// Returns the curve whose raw value is `rawValue` (0 to 41), or no value.
[[nodiscard]] std::optional<EnumEasing> easingFromRawValue(std::int64_t rawValue) noexcept;

/// Returns the name of the curve's function ("easeInQuad"), or "easeNone" for an unknown curve.
[[nodiscard]] std::string_view easingName(EnumEasing type) noexcept;

/// Returns the value at frame `currentFrame` of a movement from `sourceValue` to `sourceValue + amount` in
/// `numFrames` frames. If `numFrames` is 0, most functions divide by zero and return infinity or NaN. It is a
/// fatal error if `2 * currentFrame` overflows in an OutIn function, or if a frame number leaves the 64-bit
/// range in a Bounce function.
using EasingFunction = float (*)(std::int64_t currentFrame, float sourceValue, float amount,
                                 std::int64_t numFrames);

/// Returns the function of the curve, which is `easeNone` for the end marker and for unknown values.
[[nodiscard]] EasingFunction easingFunction(EnumEasing type) noexcept;

} // namespace tonewright
