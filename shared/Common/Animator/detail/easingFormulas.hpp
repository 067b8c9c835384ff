// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The formulas of the easing curves, for the animation engine only. They are inline, so that an animator's
// action contains the formula.
//
// As usual in easing formulas, t is the frame, d the number of frames, b the start value and c the change of
// the value. All arithmetic is in single precision and in the order written; compiler flags prevent
// contraction to fused multiply-add. Powers of 2 use exp2, which returns the same bits as pow(2, x) on this
// platform with every compiler.
#pragma once

#include "platform/foundation/checked.hpp"
#include "shared/Common/Animator/Easing.hpp"
#include "shared/Common/Animator/detail/sine.hpp"

#include <cmath>
#include <cstdint>
#include <numbers>

namespace tonewright::easing {

using Frame = std::int64_t;

inline constexpr float Pi = std::numbers::pi_v<float>;

[[nodiscard]] inline float number(Frame frame) {
    return static_cast<float>(frame);
}

/// Returns `value`, a whole frame number computed as a float. It is a fatal error if it is outside the 64-bit
/// range.
[[nodiscard]] inline float wholeFrame(float value) {
    if (!(std::fabs(value) < 0x1p63F)) (void)platform::checkedInteger(static_cast<double>(value));
    return value;
}

inline float easeNone(Frame t, float b, float c, Frame d) {
    return (c * number(t)) / number(d) + b;
}

// Quad, Cubic, Quart, Quint

/// Returns c * x * x * ... with `Power` factors x, multiplied from the left.
template <int Power>
[[nodiscard]] inline float timesPower(float c, float x) {
    if constexpr (Power == 0) {
        return c;
    } else {
        return timesPower<Power - 1>(c * x, x);
    }
}

/// Returns x * x * ... with `Power` factors, multiplied from the left.
template <int Power>
[[nodiscard]] inline float power(float x) {
    return timesPower<Power - 1>(x, x);
}

template <int Power>
inline float easeInPower(Frame t, float b, float c, Frame d) {
    return timesPower<Power>(c, number(t) / number(d)) + b;
}

// For the fourth power, the curve starts at b + 2c and falls to b + c. Existing movements rely on that.
template <int Power>
inline float easeOutPower(Frame t, float b, float c, Frame d) {
    const float v = number(t) / number(d) - 1;
    return c * (power<Power>(v) + 1) + b;
}

// For the fourth power, the curve jumps from b + c/2 to b + 1.5c in the middle. Existing movements rely on
// that.
template <int Power>
inline float easeInOutPower(Frame t, float b, float c, Frame d) {
    const float w = number(t) / (number(d) / 2);
    if (w < 1) return timesPower<Power>(c / 2, w) + b;
    const float v = w - 2;
    return (c / 2) * (power<Power>(v) + 2) + b;
}

inline float easeOutQuad(Frame t, float b, float c, Frame d) {
    const float u = number(t) / number(d);
    return -c * u * (u - 2) + b;
}

inline float easeInOutQuad(Frame t, float b, float c, Frame d) {
    const float w = number(t) / (number(d) / 2);
    if (w < 1) return (c / 2) * w * w + b;
    const float v = w - 1;
    return (-c / 2) * (v * (v - 2) - 1) + b;
}

// Sine. u * (Pi / 2) equals u * Pi / 2 and c - c * cos equals -c * cos + c, because halving a float and
// changing its sign are exact.

inline float easeInSine(Frame t, float b, float c, Frame d) {
    const float u = number(t) / number(d);
    return (c - c * cosine(u * (Pi / 2))) + b;
}

inline float easeOutSine(Frame t, float b, float c, Frame d) {
    const float u = number(t) / number(d);
    return c * sine(u * (Pi / 2)) + b;
}

inline float easeInOutSine(Frame t, float b, float c, Frame d) {
    return (-c / 2) * (cosine(Pi * number(t) / number(d)) - 1) + b;
}

// Expo

inline float easeInExpo(Frame t, float b, float c, Frame d) {
    if (number(t) == 0) return b;
    const float u = number(t) / number(d);
    return c * std::exp2(10 * (u - 1)) + b;
}

inline float easeOutExpo(Frame t, float b, float c, Frame d) {
    if (number(t) == number(d)) return b + c;
    return c * (1 - std::exp2((-10 * number(t)) / number(d))) + b;
}

// This halves u instead of d, so the curve hardly rises and jumps to its end at the last frame. Existing
// movements rely on that.
inline float easeInOutExpo(Frame t, float b, float c, Frame d) {
    if (number(t) == 0) return b;
    if (number(t) == number(d)) return b + c;
    const float w = (number(t) / number(d)) / 2;
    if (w < 1) return (c / 2) * std::exp2(10 * (w - 1)) + b;
    return (c / 2) * (2 - std::exp2(-10 * (w - 1))) + b;
}

// Circ

inline float easeInCirc(Frame t, float b, float c, Frame d) {
    const float u = number(t) / number(d);
    return -c * (std::sqrt(1 - u * u) - 1) + b;
}

inline float easeOutCirc(Frame t, float b, float c, Frame d) {
    const float v = number(t) / number(d) - 1;
    return c * std::sqrt(1 - v * v) + b;
}

inline float easeInOutCirc(Frame t, float b, float c, Frame d) {
    const float w = number(t) / (number(d) / 2);
    if (w < 1) return (-c / 2) * (std::sqrt(1 - w * w) - 1) + b;
    const float v = w - 2;
    return (c / 2) * (std::sqrt(1 - v * v) + 1) + b;
}

// Elastic

inline float easeInElastic(Frame t, float b, float c, Frame d) {
    if (number(t) == 0) return b;
    const float u = number(t) / number(d);
    if (u == 1) return b + c;
    const float p = number(d) * 0.3F;
    const float s = p / 4;
    const float v = u - 1;
    return -(c * std::exp2(10 * v) * std::sin((v * number(d) - s) * (2 * Pi) / p)) + b;
}

inline float easeOutElastic(Frame t, float b, float c, Frame d) {
    if (number(t) == 0) return b;
    const float u = number(t) / number(d);
    if (u == 1) return b + c;
    const float p = number(d) * 0.3F;
    const float s = p / 4;
    return c * std::exp2(-10 * u) * std::sin((u * number(d) - s) * (2 * Pi) / p) + c + b;
}

inline float easeInOutElastic(Frame t, float b, float c, Frame d) {
    if (number(t) == 0) return b;
    const float w = number(t) / (number(d) / 2);
    if (w == 2) return b + c;
    const float p = number(d) * (0.3F * 1.5F);
    const float s = p / 4;
    const float v = w - 1;
    const float angle = ((v * number(d) - s) * 2 * Pi) / p;
    if (w < 1) return -0.5F * (c * std::exp2(10 * v) * std::sin(angle)) + b;
    return c * std::exp2(-10 * v) * std::sin(angle) * 0.5F + c + b;
}

// Back

inline constexpr float Overshoot = 1.70158F;
inline constexpr float OvershootInOut = 1.70158F * 1.525F;

inline float easeInBack(Frame t, float b, float c, Frame d) {
    const float u = number(t) / number(d);
    return c * u * u * ((Overshoot + 1) * u - Overshoot) + b;
}

inline float easeOutBack(Frame t, float b, float c, Frame d) {
    const float v = number(t) / number(d) - 1;
    return c * (v * v * ((Overshoot + 1) * v + Overshoot) + 1) + b;
}

inline float easeInOutBack(Frame t, float b, float c, Frame d) {
    const float w = number(t) / (number(d) / 2);
    if (w < 1) return (c / 2) * (w * w * ((OvershootInOut + 1) * w - OvershootInOut)) + b;
    const float v = w - 2;
    return (c / 2) * (v * v * ((OvershootInOut + 1) * v + OvershootInOut) + 2) + b;
}

// Bounce

[[nodiscard]] inline float bounce(float t, float b, float c, float d) {
    constexpr float Factor = 7.5625F;
    const float u = t / d;
    if (u < static_cast<float>(1 / 2.75)) return c * (Factor * u * u) + b;
    if (u < 2 / 2.75F) {
        const float v = u - 1.5F / 2.75F;
        return c * (Factor * v * v + 0.75F) + b;
    }
    if (u < 2.5F / 2.75F) {
        const float v = u - 2.25F / 2.75F;
        return c * (Factor * v * v + 0.9375F) + b;
    }
    const float v = u - 2.625F / 2.75F;
    return c * (Factor * v * v + 0.984375F) + b;
}

inline float easeOutBounce(Frame t, float b, float c, Frame d) {
    return bounce(number(t), b, c, number(d));
}

// Frames are computed as floats, so frame numbers beyond 2^24 are rounded.
[[nodiscard]] inline float bounceIn(float t, float b, float c, float d) {
    return c - bounce(wholeFrame(d - t), 0, c, wholeFrame(d)) + b;
}

inline float easeInBounce(Frame t, float b, float c, Frame d) {
    return bounceIn(number(t), b, c, number(d));
}

inline float easeInOutBounce(Frame t, float b, float c, Frame d) {
    const float twice = number(t) * 2;
    if (number(t) < number(d) / 2) return bounceIn(wholeFrame(twice), 0, c, number(d)) * 0.5F + b;
    return bounce(wholeFrame(twice - number(d)), 0, c, number(d)) * 0.5F + c * 0.5F + b;
}

// OutIn

/// Runs `out` at double speed over the first half of the frames and `in` over the second half. With an odd
/// number of frames, `in` starts at frame -1.
template <class Out, class In>
inline float outIn(Frame t, float b, float c, Frame d, Out out, In in) {
    const Frame half = d / 2;
    const Frame twice = platform::checkedMultiply<Frame>(t, 2);
    if (t < half) return out(twice, b, c / 2, d);
    return in(platform::checkedSubtract(twice, d), b + c / 2, c / 2, d);
}

// Calls `outIn` for frame numbers whose arithmetic may overflow, which is a fatal error. A separate function,
// so that the usual path is short and needs no stack.
template <EasingFunction Out, EasingFunction In>
[[gnu::noinline, gnu::cold]] float easeOutInChecked(Frame t, float b, float c, Frame d) {
    return outIn(t, b, c, d, Out, In);
}

template <EasingFunction Out, EasingFunction In>
inline float easeOutIn(Frame t, float b, float c, Frame d) {
    constexpr std::uint64_t Limit =
        std::uint64_t{1} << 62; // smaller numbers can be doubled; negative ones are larger when unsigned
    if ((static_cast<std::uint64_t>(t) | static_cast<std::uint64_t>(d)) >= Limit) {
        return easeOutInChecked<Out, In>(t, b, c, d);
    }
    if (2 * t + 1 < d) return Out(2 * t, b, c / 2, d); // t < d / 2, rounded down
    return In(2 * t - d, b + c / 2, c / 2, d);
}

} // namespace tonewright::easing
