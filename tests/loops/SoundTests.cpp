// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Compares decoded loop files with the encoded samples.
#include "loops/encode/LoopEncoder.hpp"
#include "tests/loops/LoopFile.hpp"

namespace tonewright::loops {
namespace {

/// Returns a steady chord; each partial has a whole number of periods in the loop.
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
         {std::tuple{90112U, 44100, 2U}, // a multiple of the block length
          std::tuple{90111U, 48000, 2U}, std::tuple{89601U, 44100, 1U}}) {
        SCOPED_TRACE(frames);
        const Pcm pcm = hum(frames, rate, channels);
        ASSERT_EQ(encodeLoop(pcm, "A Hum", file), std::nullopt);
        const test::Sound decoded = expectLoop(file, pcm, 30.0); // a misplaced frame would fail this
        EXPECT_NE(test::contentOf(file).find("A Hum"), std::string::npos);
        EXPECT_TRUE(passesOf(file, rate, 20) == test::repeated(decoded, 20));
    }
    const auto fault = encodeLoop(hum(90000, 44100, 1), "", "/nonexistent/folder/1.m4a");
    ASSERT_TRUE(fault);
    EXPECT_NE(fault->find("No such file"), std::string::npos) << *fault;
}

} // namespace
} // namespace tonewright::loops
