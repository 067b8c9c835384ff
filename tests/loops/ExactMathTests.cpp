// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The functions of our own against the C library's, which may differ from machine to machine in the last bit
// only.

#include "loops/synth/ExactMath.hpp"

#include <cmath>
#include <gtest/gtest.h>

namespace tonewright::loops {
namespace {

TEST(ExactMath, AgreesWithTheLibrary) {
    for (int step = -4000; step <= 4000; ++step) {
        const double x = step * 0.00137;
        EXPECT_NEAR(sineOfTurns(x), std::sin(2.0 * std::acos(-1.0) * x), 2e-14) << x;
        EXPECT_NEAR(powerOfTwo(x * 7) / std::exp2(x * 7), 1.0, 1e-14) << x;
        const double positive = std::exp(x * 3);
        EXPECT_NEAR(logarithmOfTwo(positive), std::log2(positive), 1e-13) << positive;
    }
    EXPECT_NEAR(gainOfDecibels(-6.0), std::pow(10.0, -0.3), 1e-14);
    EXPECT_NEAR(decibelsOfGain(0.25), 20.0 * std::log10(0.25), 1e-12);
    EXPECT_NEAR(frequencyOfNote(60), 261.6255653005986, 1e-9);
    EXPECT_NEAR(std::pow(decayFactor(0.5, 1000.0), 500.0), 0.001, 1e-12);
}

TEST(ExactMath, StaysInBoundsAtTheEdges) {
    EXPECT_EQ(powerOfTwo(-2000.0), 0.0);
    EXPECT_TRUE(std::isfinite(powerOfTwo(1e9)));
    EXPECT_EQ(powerOfTwo(std::nan("")), 0.0);
    EXPECT_EQ(saturate(3.0), 1.0);
    EXPECT_EQ(saturate(-100.0), -1.0);
    EXPECT_EQ(decayFactor(0.0, 44100.0), 0.0);
}

} // namespace
} // namespace tonewright::loops
