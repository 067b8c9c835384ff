// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The arithmetic beneath the loops, and what goes into a file beside what comes out of it.
#include "loops/encode/LoopEncoder.hpp"
#include "loops/synth/ExactMath.hpp"
#include "tests/loops/LoopFile.hpp"

namespace tonewright::loops {
namespace {

// The C library's functions may differ between machines only in the last bit.
TEST(ExactMath, AgreesWithTheLibraryAndStaysInBounds) {
    for (int step = -4000; step <= 4000; ++step) {
        const double x = step * 0.00137;
        EXPECT_NEAR(sineOfTurns(x), std::sin(2.0 * std::acos(-1.0) * x), 2e-14) << x;
        EXPECT_NEAR(powerOfTwo(x * 7) / std::exp2(x * 7), 1.0, 1e-14) << x;
        EXPECT_NEAR(logarithmOfTwo(std::exp(x * 3)), std::log2(std::exp(x * 3)), 1e-13) << x;
    }
    EXPECT_NEAR(gainOfDecibels(-6.0), std::pow(10.0, -0.3), 1e-14);
    EXPECT_NEAR(decibelsOfGain(0.25), 20.0 * std::log10(0.25), 1e-12);
    EXPECT_NEAR(frequencyOfNote(60), 261.6255653005986, 1e-9);
    EXPECT_NEAR(std::pow(decayFactor(0.5, 1000.0), 500.0), 0.001, 1e-12);
    EXPECT_EQ(decayFactor(0.0, 44100.0), 0.0);
    EXPECT_EQ(powerOfTwo(-2000.0), 0.0);
    EXPECT_TRUE(std::isfinite(powerOfTwo(1e9)));
    EXPECT_EQ(powerOfTwo(std::nan("")), 0.0);
    EXPECT_EQ(saturate(3.0), 1.0);
    EXPECT_EQ(saturate(-100.0), -1.0);
}

/// A chord with no beginning: its partials fit into the loop a whole number of times.
Pcm hum(std::size_t frames, int rate, std::size_t channels) {
    Pcm pcm{.rate = rate, .channels = std::vector(channels, std::vector<float>(frames))};
    for (std::size_t channel = 0; channel < channels; ++channel) {
        for (std::size_t frame = 0; frame < frames; ++frame) {
            const double turn = 6.283185307179586 * static_cast<double>(frame) / static_cast<double>(frames);
            for (const double turns : {211.0, 331.0, 1201.0 + 200.0 * static_cast<double>(channel)}) {
                pcm.channels[channel][frame] += static_cast<float>(0.2 * std::sin(turns * turn));
            }
        }
    }
    return pcm;
}

TEST(Encoder, KeepsEveryFrameAcrossTheSeam) {
    quietEncoder();
    const test::Scratch folder;
    const std::string file = folder / "hum.m4a";
    for (const auto& [frames, rate, channels] :
         {std::tuple{90112U, 44100, 2U}, // a whole number of blocks
          std::tuple{90111U, 48000, 2U}, std::tuple{89601U, 44100, 1U}}) {
        SCOPED_TRACE(frames);
        const Pcm pcm = hum(frames, rate, channels);
        ASSERT_EQ(encodeLoop(pcm, "A Hum", file), std::nullopt);
        const test::Sound decoded = expectLoop(file, pcm, 30.0); // a frame out of place would leave nothing
        EXPECT_NE(test::contentOf(file).find("A Hum"), std::string::npos);
        EXPECT_TRUE(passesOf(file, rate, 20) == test::repeated(decoded, 20));
    }
    const auto fault = encodeLoop(hum(90000, 44100, 1), "", "/nonexistent/folder/1.m4a");
    ASSERT_TRUE(fault);
    EXPECT_NE(fault->find("No such file"), std::string::npos) << *fault;
}

} // namespace
} // namespace tonewright::loops
