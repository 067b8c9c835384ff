// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "benches/easing/plain.hpp"

#include <cmath>

namespace bench {
namespace {

using I = std::int64_t;
constexpr float Pi = 3.14159265358979F;

float f(I i) {
    return static_cast<float>(i);
}

float none(I t, float b, float c, I d) {
    return c * f(t) / f(d) + b;
}
float inQuad(I t, float b, float c, I d) {
    const float u = f(t) / f(d);
    return c * u * u + b;
}
float outQuad(I t, float b, float c, I d) {
    const float u = f(t) / f(d);
    return -c * u * (u - 2) + b;
}
float inOutQuad(I t, float b, float c, I d) {
    float w = f(t) / (f(d) / 2);
    if (w < 1) return c / 2 * w * w + b;
    w -= 1;
    return -c / 2 * (w * (w - 2) - 1) + b;
}
float inCubic(I t, float b, float c, I d) {
    const float u = f(t) / f(d);
    return c * u * u * u + b;
}
float outCubic(I t, float b, float c, I d) {
    const float v = f(t) / f(d) - 1;
    return c * (v * v * v + 1) + b;
}
float inOutCubic(I t, float b, float c, I d) {
    float w = f(t) / (f(d) / 2);
    if (w < 1) return c / 2 * w * w * w + b;
    w -= 2;
    return c / 2 * (w * w * w + 2) + b;
}
float inQuart(I t, float b, float c, I d) {
    const float u = f(t) / f(d);
    return c * u * u * u * u + b;
}
float outQuart(I t, float b, float c, I d) {
    const float v = f(t) / f(d) - 1;
    return c * (v * v * v * v + 1) + b;
}
float inOutQuart(I t, float b, float c, I d) {
    float w = f(t) / (f(d) / 2);
    if (w < 1) return c / 2 * w * w * w * w + b;
    w -= 2;
    return c / 2 * (w * w * w * w + 2) + b;
}
float inQuint(I t, float b, float c, I d) {
    const float u = f(t) / f(d);
    return c * u * u * u * u * u + b;
}
float outQuint(I t, float b, float c, I d) {
    const float v = f(t) / f(d) - 1;
    return c * (v * v * v * v * v + 1) + b;
}
float inOutQuint(I t, float b, float c, I d) {
    float w = f(t) / (f(d) / 2);
    if (w < 1) return c / 2 * w * w * w * w * w + b;
    w -= 2;
    return c / 2 * (w * w * w * w * w + 2) + b;
}
float inSine(I t, float b, float c, I d) {
    return -c * cosf(f(t) / f(d) * Pi / 2) + c + b;
}
float outSine(I t, float b, float c, I d) {
    return c * sinf(f(t) / f(d) * Pi / 2) + b;
}
float inOutSine(I t, float b, float c, I d) {
    return -c / 2 * (cosf(Pi * f(t) / f(d)) - 1) + b;
}
float inExpo(I t, float b, float c, I d) {
    return t == 0 ? b : c * powf(2, 10 * (f(t) / f(d) - 1)) + b;
}
float outExpo(I t, float b, float c, I d) {
    return f(t) == f(d) ? b + c : c * (1 - powf(2, -10 * f(t) / f(d))) + b;
}
float inOutExpo(I t, float b, float c, I d) {
    if (t == 0) return b;
    if (f(t) == f(d)) return b + c;
    const float w = f(t) / f(d) / 2;
    if (w < 1) return c / 2 * powf(2, 10 * (w - 1)) + b;
    return c / 2 * (2 - powf(2, -10 * (w - 1))) + b;
}
float inCirc(I t, float b, float c, I d) {
    const float u = f(t) / f(d);
    return -c * (sqrtf(1 - u * u) - 1) + b;
}
float outCirc(I t, float b, float c, I d) {
    const float v = f(t) / f(d) - 1;
    return c * sqrtf(1 - v * v) + b;
}
float inOutCirc(I t, float b, float c, I d) {
    float w = f(t) / (f(d) / 2);
    if (w < 1) return -c / 2 * (sqrtf(1 - w * w) - 1) + b;
    w -= 2;
    return c / 2 * (sqrtf(1 - w * w) + 1) + b;
}
float inElastic(I t, float b, float c, I d) {
    if (t == 0) return b;
    const float u = f(t) / f(d);
    if (u == 1) return b + c;
    const float p = f(d) * 0.3F, s = p / 4, v = u - 1;
    return -(c * powf(2, 10 * v) * sinf((v * f(d) - s) * (2 * Pi) / p)) + b;
}
float outElastic(I t, float b, float c, I d) {
    if (t == 0) return b;
    const float u = f(t) / f(d);
    if (u == 1) return b + c;
    const float p = f(d) * 0.3F, s = p / 4;
    return c * powf(2, -10 * u) * sinf((u * f(d) - s) * (2 * Pi) / p) + c + b;
}
float inOutElastic(I t, float b, float c, I d) {
    if (t == 0) return b;
    const float w = f(t) / (f(d) / 2);
    if (w == 2) return b + c;
    const float p = f(d) * (0.3F * 1.5F), s = p / 4, v = w - 1;
    const float angle = (v * f(d) - s) * 2 * Pi / p;
    if (w < 1) return -0.5F * (c * powf(2, 10 * v) * sinf(angle)) + b;
    return c * powf(2, -10 * v) * sinf(angle) * 0.5F + c + b;
}
float inBack(I t, float b, float c, I d) {
    const float u = f(t) / f(d);
    return c * u * u * (2.70158F * u - 1.70158F) + b;
}
float outBack(I t, float b, float c, I d) {
    const float v = f(t) / f(d) - 1;
    return c * (v * v * (2.70158F * v + 1.70158F) + 1) + b;
}
float inOutBack(I t, float b, float c, I d) {
    float w = f(t) / (f(d) / 2);
    if (w < 1) return c / 2 * (w * w * (3.5949095F * w - 2.5949095F)) + b;
    w -= 2;
    return c / 2 * (w * w * (3.5949095F * w + 2.5949095F) + 2) + b;
}
float outBounce(I t, float b, float c, I d) {
    const float u = f(t) / f(d);
    if (u < 0.36363637F) return c * (7.5625F * u * u) + b;
    if (u < 0.72727275F) {
        const float v = u - 0.54545456F;
        return c * (7.5625F * v * v + 0.75F) + b;
    }
    if (u < 0.9090909F) {
        const float v = u - 0.8181818F;
        return c * (7.5625F * v * v + 0.9375F) + b;
    }
    const float v = u - 0.95454544F;
    return c * (7.5625F * v * v + 0.984375F) + b;
}
float inBounce(I t, float b, float c, I d) {
    return c - outBounce(static_cast<I>(f(d) - f(t)), 0, c, static_cast<I>(f(d))) + b;
}
float inOutBounce(I t, float b, float c, I d) {
    if (f(t) < f(d) / 2) return inBounce(static_cast<I>(f(t) * 2), 0, c, d) * 0.5F + b;
    return outBounce(static_cast<I>(f(t) * 2 - f(d)), 0, c, d) * 0.5F + c * 0.5F + b;
}

template <Plain Out, Plain In>
float outIn(I t, float b, float c, I d) {
    if (t < d / 2) return Out(t * 2, b, c / 2, d);
    return In(t * 2 - d, b + c / 2, c / 2, d);
}

} // namespace

const Plain PlainFormulas[PlainCount] = {
    none,
    inQuad,
    outQuad,
    inOutQuad,
    outIn<outQuad, inQuad>,
    inCubic,
    outCubic,
    inOutCubic,
    outIn<outCubic, inCubic>,
    inQuart,
    outQuart,
    inOutQuart,
    outIn<outQuart, inQuart>,
    inQuint,
    outQuint,
    inOutQuint,
    outIn<outQuint, inQuint>,
    inSine,
    outSine,
    inOutSine,
    outIn<outSine, inSine>,
    inExpo,
    outExpo,
    inOutExpo,
    outIn<outExpo, inExpo>,
    inCirc,
    outCirc,
    inOutCirc,
    outIn<outCirc, inCirc>,
    inElastic,
    outElastic,
    inOutElastic,
    outIn<outElastic, inElastic>,
    inBack,
    outBack,
    inOutBack,
    outIn<outBack, inBack>,
    inBounce,
    outBounce,
    inOutBounce,
    outIn<outBounce, inBounce>,
};

} // namespace bench
