// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What goes into a file comes out of it: every frame, on its place, also across the seam.

#include "DecodedLoop.hpp"
#include "SeamError.hpp"
#include "loops/encode/LoopEncoder.hpp"
#include "tests/audio/audioFixture.hpp"

#include <cmath>
#include <gtest/gtest.h>

namespace tonewright::loops {
namespace {

/// A chord with no beginning: its partials fit into the loop a whole number of times.
Pcm hum(std::size_t frames, int rate, std::size_t channels) {
    Pcm pcm{.rate = rate, .channels = std::vector(channels, std::vector<float>(frames))};
    for (std::size_t channel = 0; channel < channels; ++channel) {
        for (std::size_t frame = 0; frame < frames; ++frame) {
            double value = 0;
            for (const double turns : {211.0, 331.0, 1201.0 + 200.0 * static_cast<double>(channel)}) {
                value += 0.2 * std::sin(6.283185307179586 * turns * static_cast<double>(frame) /
                                        static_cast<double>(frames));
            }
            pcm.channels[channel][frame] = static_cast<float>(value);
        }
    }
    return pcm;
}

class Encoded : public testing::TestWithParam<std::tuple<std::size_t, int, std::size_t>> {};

TEST_P(Encoded, LoopsExactly) {
    quietEncoder();
    const Pcm pcm = std::apply(hum, GetParam());
    const test::Scratch folder;
    ASSERT_EQ(encodeLoop(pcm, "A Hum", folder / "hum.m4a"), std::nullopt);
    const DecodedLoop decoded = decodeLoop(folder / "hum.m4a");
    ASSERT_EQ(decoded.fault, "");
    EXPECT_NE(test::contentOf(folder / "hum.m4a").find("A Hum"), std::string::npos);
    EXPECT_EQ(decoded.rate, pcm.rate);
    ASSERT_EQ(decoded.channels.size(), pcm.channels.size());
    ASSERT_EQ(decoded.channels[0].size(), pcm.frames());
    constexpr int Passes = 20;
    EXPECT_TRUE(decodeLoop(folder / "hum.m4a", Passes).channels == test::repeated(decoded.channels, Passes));
    const SeamError error = seamError(pcm.channels, decoded.channels);
    EXPECT_GT(error.signalToNoise, 30.0); // one frame out of place would leave less than nothing
    EXPECT_LE(error.excess(), 3.0);
}

INSTANTIATE_TEST_SUITE_P(Lengths, Encoded,
                         testing::Values(std::tuple{90112, 44100, 2}, // a whole number of blocks
                                         std::tuple{90113, 44100, 2}, std::tuple{90111, 48000, 2},
                                         std::tuple{89601, 44100, 1}));

TEST(Encoder, SaysWhyItCannotWrite) {
    const auto fault = encodeLoop(hum(90000, 44100, 1), "", "/nonexistent/folder/1.m4a");
    ASSERT_TRUE(fault);
    EXPECT_NE(fault->find("No such file"), std::string::npos) << *fault;
}

} // namespace
} // namespace tonewright::loops
