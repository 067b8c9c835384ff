// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The curves against an evaluation of their own in extended precision, written from the mathematics of the
// families (one generic shape per family) and not from the code, and against known values.
#include "shared/Common/Animator/Easing.hpp"
#include "shared/Common/Animator/Sine.private.hpp"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <numbers>
#include <string>

using namespace tonewright;
using enum EnumEasing;

namespace {

using Real = long double;
using Curve = std::function<Real(Real)>; // from progress 0..1 to change 0..1

constexpr Real Pi = std::numbers::pi_v<Real>;
constexpr Real S = 1.70158L;

enum class Shape { In, Out, InOut };

Curve powerCurve(int n, Shape shape) {
    const auto p = [n](Real x) { return std::pow(x, static_cast<Real>(n)); };
    switch (shape) {
    case Shape::In:
        return p;
    case Shape::Out: // an even power does not change sign: what makes the fourth start at 2
        return [=](Real u) { return n == 2 ? 1 - p(1 - u) : p(u - 1) + 1; };
    default:
        return [=](Real u) {
            if (u < 0.5L) return p(2 * u) / 2;
            return n == 2 ? 1 - p(2 - 2 * u) / 2 : (p(2 * u - 2) + 2) / 2;
        };
    }
}

Curve sineCurve(Shape shape) {
    if (shape == Shape::In) return [](Real u) { return 1 - std::cos(u * Pi / 2); };
    if (shape == Shape::Out) return [](Real u) { return std::sin(u * Pi / 2); };
    return [](Real u) { return (1 - std::cos(Pi * u)) / 2; };
}

Curve expoCurve(Shape shape) {
    if (shape == Shape::In) return [](Real u) { return u == 0 ? 0 : std::exp2(10 * (u - 1)); };
    if (shape == Shape::Out) return [](Real u) { return u == 1 ? 1 : 1 - std::exp2(-10 * u); };
    return [](Real u) { return u == 0 ? 0 : u == 1 ? 1 : std::exp2(10 * (u / 2 - 1)) / 2; };
}

Curve circCurve(Shape shape) {
    const auto in = [](Real u) { return 1 - std::sqrt(1 - u * u); };
    if (shape == Shape::In) return in;
    if (shape == Shape::Out) return [=](Real u) { return 1 - in(1 - u); };
    return [=](Real u) { return u < 0.5L ? in(2 * u) / 2 : 1 - in(2 - 2 * u) / 2; };
}

// A sine of period 0.3 (0.45 in both directions) under an exponential, a quarter of a period late.
Curve elasticCurve(Shape shape) {
    const auto wave = [](Real x, Real period) { return std::sin((x - period / 4) * 2 * Pi / period); };
    return [=](Real u) -> Real {
        if (u == 0) return 0;
        if (u == 1) return 1;
        if (shape == Shape::In) return -std::exp2(10 * (u - 1)) * wave(u - 1, 0.3L);
        if (shape == Shape::Out) return 1 + std::exp2(-10 * u) * wave(u, 0.3L);
        const Real v = 2 * u - 1;
        return v < 0 ? -std::exp2(10 * v) * wave(v, 0.45L) / 2 : 1 + std::exp2(-10 * v) * wave(v, 0.45L) / 2;
    };
}

Curve backCurve(Shape shape) {
    const auto in = [](Real s) { return [s](Real u) { return u * u * ((s + 1) * u - s); }; };
    if (shape == Shape::In) return in(S);
    if (shape == Shape::Out) return [=](Real u) { return 1 - in(S)(1 - u); };
    return [=](Real u) {
        const auto both = in(S * 1.525L);
        return u < 0.5L ? both(2 * u) / 2 : 1 - both(2 - 2 * u) / 2;
    };
}

// A ball whose arcs are parabolas about 0, 6/11, 9/11 and 21/22.
Real bounceOut(Real u) {
    const Real k = 121.0L / 16;
    const auto arc = [&](Real centre, Real height) { return k * (u - centre) * (u - centre) + height; };
    if (u < 4.0L / 11) return arc(0, 0);
    if (u < 8.0L / 11) return arc(6.0L / 11, 0.75L);
    if (u < 10.0L / 11) return arc(9.0L / 11, 0.9375L);
    return arc(21.0L / 22, 0.984375L);
}

Curve bounceCurve(Shape shape) {
    if (shape == Shape::Out) return bounceOut;
    if (shape == Shape::In) return [](Real u) { return 1 - bounceOut(1 - u); };
    return [](Real u) { return u < 0.5L ? (1 - bounceOut(1 - 2 * u)) / 2 : (1 + bounceOut(2 * u - 1)) / 2; };
}

Curve familyCurve(int family, Shape shape) {
    switch (family) {
    case 0:
    case 1:
    case 2:
    case 3:
        return powerCurve(family + 2, shape);
    case 4:
        return sineCurve(shape);
    case 5:
        return expoCurve(shape);
    case 6:
        return circCurve(shape);
    case 7:
        return elasticCurve(shape);
    case 8:
        return backCurve(shape);
    default:
        return bounceCurve(shape);
    }
}

// Gives the expected value of kind `raw`, whose frames are whole numbers.
Real expected(std::int64_t raw, std::int64_t t, Real b, Real c, std::int64_t d) {
    const auto progress = [&](std::int64_t frame) { return static_cast<Real>(frame) / static_cast<Real>(d); };
    if (raw == 0) return b + c * progress(t);
    const int family = static_cast<int>((raw - 1) / 4);
    switch ((raw - 1) % 4) {
    case 0:
        return b + c * familyCurve(family, Shape::In)(progress(t));
    case 1:
        return b + c * familyCurve(family, Shape::Out)(progress(t));
    case 2:
        return b + c * familyCurve(family, Shape::InOut)(progress(t));
    default:
        if (t < d / 2) return b + c / 2 * familyCurve(family, Shape::Out)(progress(2 * t));
        return b + c / 2 + c / 2 * familyCurve(family, Shape::In)(progress(2 * t - d));
    }
}

float ease(EnumEasing type, std::int64_t t, float b, float c, std::int64_t d) {
    return easingFunction(type)(t, b, c, d);
}

} // namespace

TEST(Easing, EveryCurveIsTheMathematicalOne) {
    // Frame counts whose quotients keep clear of the places where a curve jumps between two formulas.
    for (std::int64_t raw = 0; raw <= 40; ++raw)
        for (const std::int64_t d : {1, 2, 5, 7, 10, 60, 97, 1000, 4001})
            for (const auto& [b, c] : {std::pair{0.0F, 1.0F}, {10.0F, -4.0F}, {-3.5F, 1000.0F}})
                for (std::int64_t t = 0; t <= d; t += d < 200 ? 1 : 13) {
                    const Real want = expected(raw, t, b, c, d);
                    const float got = ease(static_cast<EnumEasing>(raw), t, b, c, d);
                    // A few roundings of values as large as those that are added up; near the vertical ends
                    // of Circ, and where an angle of many turns was rounded, some more.
                    const int family = static_cast<int>((raw - 1) / 4);
                    const Real scale = std::fabs(static_cast<Real>(b)) + 2 * std::fabs(static_cast<Real>(c));
                    const Real tolerance = scale * 1.2e-7L * (family == 6 ? 500 : family == 7 ? 40 : 8);
                    ASSERT_NEAR(static_cast<double>(got), static_cast<double>(want),
                                static_cast<double>(tolerance))
                        << easingName(static_cast<EnumEasing>(raw)) << " at " << t << " of " << d;
                }
}

// As near as a C library's single-precision functions come, at every four thousandth float from 0 to pi,
// where the program computes them itself, and beyond, where it does not.
TEST(Easing, SineAndCosineAreRoundedWell) {
    const auto isNear = [](float got, Real want) {
        const int last = want == 0 ? -149 : std::max(std::ilogb(want) - 23, -149); // digit of the float
        const Real unit = std::scalbn(1.0L, last);
        return std::fabs(static_cast<Real>(got) - want) <= 0.561L * unit;
    };
    for (std::uint32_t bits = 0; bits <= std::bit_cast<std::uint32_t>(7.0F); bits += 4001) {
        const float x = std::bit_cast<float>(bits);
        ASSERT_TRUE(isNear(easing::sine(x), std::sin(static_cast<Real>(x)))) << x;
        ASSERT_TRUE(isNear(easing::cosine(x), std::cos(static_cast<Real>(x)))) << x;
        ASSERT_EQ(easing::sine(-x), -easing::sine(x)) << x;
        ASSERT_EQ(easing::cosine(-x), easing::cosine(x)) << x;
    }
    EXPECT_TRUE(std::isnan(easing::sine(INFINITY)) && std::isnan(easing::cosine(std::nanf(""))));
}

TEST(Easing, KnownValues) {
    EXPECT_EQ(ease(EASING_easeOutQuart, 0, 0, 1, 10), 2.0F);
    EXPECT_EQ(ease(EASING_easeOutQuart, 10, 0, 1, 10), 1.0F);
    EXPECT_EQ(ease(EASING_easeInOutQuart, 5, 0, 1, 10), 1.5F);
    EXPECT_FLOAT_EQ(ease(EASING_easeInOutQuart, 4, 0, 1, 10), 0.2048F);
    EXPECT_NEAR(ease(EASING_easeInOutExpo, 9, 0, 1, 10), 0.011049F, 1e-6F);
    EXPECT_EQ(ease(EASING_easeInOutExpo, 10, 0, 1, 10), 1.0F);
    EXPECT_EQ(ease(EASING_easeInOutExpo, 0, 0, 1, 10), 0.0F);
    EXPECT_EQ(ease(EASING_easeOutBounce, 0, 0, 1, 11), 0.0F);
    EXPECT_NEAR(ease(EASING_easeOutBounce, 363636, 0, 1, 1'000'000), 1.0F, 1e-4F);
    EXPECT_NEAR(ease(EASING_easeOutBack, 50, 0, 1, 100), 1.0877F, 1e-4F);
    EXPECT_NEAR(ease(EASING_easeInBack, 50, 0, 1, 100), -0.0877F, 1e-4F);
    EXPECT_FLOAT_EQ(ease(EASING_easeOutInQuad, 2, 0, 1, 5), 0.52F); // the second half begins at frame -1
    EXPECT_FLOAT_EQ(ease(EASING_easeOutInQuad, 1, 0, 1, 5), 0.32F);
    EXPECT_FLOAT_EQ(ease(EASING_easeOutInQuad, 0, 0, 1, 1), 1.0F);
    EXPECT_FLOAT_EQ(ease(EASING_easeOutInQuad, -1, 0, 1, 4), -0.625F); // before the start
    EXPECT_FLOAT_EQ(ease(EASING_easeOutInQuad, -3, 0, 1, -5), 0.48F);  // -5 / 2 is -2
    EXPECT_FLOAT_EQ(ease(EASING_easeOutInQuad, -2, 0, 1, -5), 0.52F);
    for (std::int64_t t = 0; t <= 1000; ++t) EXPECT_LE(ease(EASING_easeOutBounce, t, 0, 1, 1000), 1.0F);
}

TEST(Easing, ExactEnds) {
    for (const float b : {0.1F, -7.3F, 1e6F})
        for (const float c : {0.7F, -12.34F})
            for (const std::int64_t d : {1, 3, 7, 250}) {
                EXPECT_EQ(ease(EASING_easeInExpo, 0, b, c, d), b);
                EXPECT_EQ(ease(EASING_easeOutExpo, d, b, c, d), b + c);
                for (const auto type :
                     {EASING_easeInElastic, EASING_easeOutElastic, EASING_easeInOutElastic}) {
                    EXPECT_EQ(ease(type, 0, b, c, d), b);
                    EXPECT_EQ(ease(type, d, b, c, d), b + c);
                }
            }
}

TEST(Easing, NoFramesAndValuesThatAreNone) {
    EXPECT_TRUE(std::isinf(ease(EASING_easeInQuad, 1, 0, 1, 0)));
    EXPECT_TRUE(std::isnan(ease(EASING_easeInQuad, 0, 0, 1, 0)));
    EXPECT_EQ(ease(EASING_easeInExpo, 0, 3, 1, 0), 3.0F); // the frame test answers first
    EXPECT_EQ(ease(EASING_easeInElastic, 0, 3, 1, 0), 3.0F);
    constexpr std::int64_t Frames[] = {0, 1, -1, 5, -4'000'000, std::numeric_limits<std::int64_t>::max() / 4};
    constexpr float Values[] = {0, 1, std::numeric_limits<float>::infinity(),
                                std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::max()};
    for (std::int64_t raw = 0; raw <= 41; ++raw)
        for (const auto t : Frames)
            for (const auto d : Frames)
                for (const float b : Values)
                    for (const float c : Values) (void)ease(static_cast<EnumEasing>(raw), t, b, c, d);
}

TEST(Easing, RawValues) {
    for (std::int64_t raw = 0; raw <= 41; ++raw) {
        const auto type = easingFromRawValue(raw);
        ASSERT_TRUE(type.has_value());
        EXPECT_EQ(static_cast<std::int64_t>(*type), raw);
    }
    for (const std::int64_t raw :
         {std::int64_t{-1}, std::int64_t{42}, std::numeric_limits<std::int64_t>::max(),
          std::numeric_limits<std::int64_t>::min()})
        EXPECT_FALSE(easingFromRawValue(raw).has_value());
    EXPECT_EQ(static_cast<std::int64_t>(EASING_easeInSine), 17);
    EXPECT_EQ(static_cast<std::int64_t>(EASING_easeOutInBounce), 40);
    EXPECT_EQ(easingFunction(EASING_easeLast), easingFunction(EASING_easeNone));
    EXPECT_EQ(easingFunction(static_cast<EnumEasing>(-7)), easingFunction(EASING_easeNone));
    EXPECT_EQ(easingName(EASING_easeOutInBack), "easeOutInBack");
}

TEST(EasingDeathTest, FramesBeyondTheRange) {
    constexpr auto Huge = std::numeric_limits<std::int64_t>::max();
    EXPECT_DEATH((void)ease(EASING_easeOutInQuad, Huge / 2 + 1, 0, 1, Huge), "Arithmetic overflow");
    EXPECT_DEATH((void)ease(EASING_easeOutInSine, 1, 0, 1, -Huge - 1), "Arithmetic overflow");
    EXPECT_DEATH((void)ease(EASING_easeInBounce, 0, 0, 1, Huge), "no 64-bit integer");
    EXPECT_DEATH((void)ease(EASING_easeInOutBounce, Huge, 0, 1, 10), "no 64-bit integer");
}
