// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Compares the curves with known values and with an independent evaluation in extended precision. The latter
// follows the mathematics of the families (one generic shape per family), not the code.
#include "shared/Common/Animator/Easing.hpp"
#include "shared/Common/Animator/detail/sine.hpp"
#include "tests/support/testing.hpp"

using namespace tonewright;
using enum EnumEasing;

namespace {

constexpr auto Huge = std::numeric_limits<std::int64_t>::max();

using Real = long double;
constexpr Real Pi = std::numbers::pi_v<Real>;

// A bouncing ball: arcs are parabolas around 0, 6/11, 9/11 and 21/22.
Real bounceOut(Real u) {
    const Real k = 121.0L / 16;
    const auto arc = [&](Real centre, Real height) { return k * (u - centre) * (u - centre) + height; };
    if (u < 4.0L / 11) return arc(0, 0);
    if (u < 8.0L / 11) return arc(6.0L / 11, 0.75L);
    if (u < 10.0L / 11) return arc(9.0L / 11, 0.9375L);
    return arc(21.0L / 22, 0.984375L);
}

enum Family { Quad, Cubic, Quart, Quint, Sine, Expo, Circ, Elastic, Back, Bounce };

// Returns a family's shape, which maps progress 0..1 to change 0..1. `both`: the curve eases in and out; some
// families then have other constants.
Real in(Family family, Real u, bool both = false) {
    if (family == Sine) return 1 - std::cos(u * Pi / 2);
    if (family == Expo) return u == 0 ? 0 : std::exp2(10 * (u - 1));
    if (family == Circ) return 1 - std::sqrt(1 - u * u);
    if (family == Bounce) return 1 - bounceOut(1 - u);
    if (family == Elastic) { // an exponentially growing sine, shifted by a quarter of a period
        const Real period = both ? 0.45L : 0.3L;
        const Real turns = (u - 1 - period / 4) / period;
        return u == 0 || u == 1 ? u : -std::exp2(10 * (u - 1)) * std::sin(2 * Pi * turns);
    }
    if (family == Back) {
        const Real s = both ? 1.70158L * 1.525L : 1.70158L;
        return u * u * ((s + 1) * u - s);
    }
    return std::pow(u, static_cast<Real>(family + 2));
}

// Out mirrors In, except for the fourth power, which starts at 2.
Real out(Family family, Real u, bool both = false) {
    const Real mirrored = in(family, 1 - u, both);
    return family == Quart ? 1 + mirrored : 1 - mirrored;
}

Real inOut(Family family, Real u) {
    if (family == Expo) return u == 0 || u == 1 ? u : std::exp2(10 * (u / 2 - 1)) / 2;
    return u < 0.5L ? in(family, 2 * u, true) / 2 : (1 + out(family, 2 * u - 1, true)) / 2;
}

// Returns the expected value of the curve number `raw`, computed with integer frames.
Real expected(std::int64_t raw, std::int64_t t, Real b, Real c, std::int64_t d) {
    const auto progress = [&](std::int64_t frame) { return static_cast<Real>(frame) / static_cast<Real>(d); };
    if (raw == 0) return b + c * progress(t);
    const auto family = static_cast<Family>((raw - 1) / 4);
    const std::int64_t direction = (raw - 1) % 4;
    if (direction == 0) return b + c * in(family, progress(t));
    if (direction == 1) return b + c * out(family, progress(t));
    if (direction == 2) return b + c * inOut(family, progress(t));
    if (t < d / 2) return b + c / 2 * out(family, progress(2 * t));
    return b + c / 2 + c / 2 * in(family, progress(2 * t - d));
}

float ease(EnumEasing type, std::int64_t t, float b, float c, std::int64_t d) {
    return easingFunction(type)(t, b, c, d);
}

} // namespace

TEST(Easing, EveryCurveIsTheMathematicalOne) {
    // The frame counts are chosen so that no quotient falls where a curve jumps between two formulas.
    for (std::int64_t raw = 0; raw <= 40; ++raw) {
        for (const std::int64_t d : {1, 2, 5, 7, 10, 60, 97, 1000, 4001}) {
            for (const auto& [b, c] : {std::pair{0.0F, 1.0F}, {10.0F, -4.0F}, {-3.5F, 1000.0F}}) {
                for (std::int64_t t = 0; t <= d; t += d < 200 ? 1 : 13) {
                    const Real want = expected(raw, t, b, c, d);
                    const float got = ease(static_cast<EnumEasing>(raw), t, b, c, d);
                    // Allows a few rounding errors of values as large as the summands, and more near the
                    // vertical ends of Circ and for Elastic, where large angles are rounded.
                    const auto family = static_cast<Family>((raw - 1) / 4);
                    const Real scale = std::fabs(static_cast<Real>(b)) + 2 * std::fabs(static_cast<Real>(c));
                    const Real tolerance = scale * 1.2e-7L *
                                           (family == Circ      ? 500
                                            : family == Elastic ? 40
                                                                : 8);
                    ASSERT_NEAR(static_cast<double>(got), static_cast<double>(want),
                                static_cast<double>(tolerance))
                        << easingName(static_cast<EnumEasing>(raw)) << " at " << t << " of " << d;
                }
            }
        }
    }
}

// Tests every 4001st float from 0 to pi, where the program computes sine and cosine itself, and above, where
// it does not. The error must be as small as in a C library's single-precision functions.
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

TEST(Easing, ExactEnds) {
    for (const std::int64_t d : {1, 3, 7, 250}) {
        EXPECT_EQ(ease(EASING_easeInExpo, 0, 0.1F, -12.34F, d), 0.1F);
        EXPECT_EQ(ease(EASING_easeOutExpo, d, 0.1F, -12.34F, d), 0.1F - 12.34F);
        for (const auto type : {EASING_easeInElastic, EASING_easeOutElastic, EASING_easeInOutElastic}) {
            EXPECT_EQ(ease(type, 0, -7.3F, 0.7F, d), -7.3F);
            EXPECT_EQ(ease(type, d, -7.3F, 0.7F, d), -7.3F + 0.7F);
        }
    }
}

TEST(Easing, FramesOutsideTheMovementAndValuesThatAreNone) {
    EXPECT_FLOAT_EQ(ease(EASING_easeOutInQuad, -1, 0, 1, 4), -0.625F);
    EXPECT_FLOAT_EQ(ease(EASING_easeOutInQuad, -3, 0, 1, -5), 0.48F); // -5 / 2 is -2
    EXPECT_FLOAT_EQ(ease(EASING_easeOutInQuad, -2, 0, 1, -5), 0.52F);
    EXPECT_TRUE(std::isinf(ease(EASING_easeInQuad, 1, 0, 1, 0)));
    EXPECT_TRUE(std::isnan(ease(EASING_easeInQuad, 0, 0, 1, 0)));
    EXPECT_EQ(ease(EASING_easeInExpo, 0, 3, 1, 0), 3.0F); // the test for frame 0 comes first
    EXPECT_EQ(ease(EASING_easeInElastic, 0, 3, 1, 0), 3.0F);
}

TEST(Easing, RawValuesBeyondTheLast) {
    EXPECT_EQ(easingFromRawValue(41), EASING_easeLast);
    for (const std::int64_t raw : {std::int64_t{-1}, std::int64_t{42}, Huge, -Huge - 1}) {
        EXPECT_FALSE(easingFromRawValue(raw).has_value());
    }
    EXPECT_EQ(easingFunction(EASING_easeLast), easingFunction(EASING_easeNone));
    EXPECT_EQ(easingFunction(static_cast<EnumEasing>(-7)), easingFunction(EASING_easeNone));
    EXPECT_EQ(easingName(EASING_easeOutInBounce), "easeOutInBounce");
}

TEST(EasingDeathTest, FramesBeyondTheRange) {
    EXPECT_DEATH((void)ease(EASING_easeOutInQuad, Huge / 2 + 1, 0, 1, Huge), "Arithmetic overflow");
    EXPECT_DEATH((void)ease(EASING_easeOutInSine, 1, 0, 1, -Huge - 1), "Arithmetic overflow");
    EXPECT_DEATH((void)ease(EASING_easeInBounce, 0, 0, 1, Huge), "does not fit into a 64-bit integer");
    EXPECT_DEATH((void)ease(EASING_easeInOutBounce, Huge, 0, 1, 10), "does not fit into a 64-bit integer");
}
