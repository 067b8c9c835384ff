// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Compares all eighty loops, as the build made them, with their recipes.
#include "loops/synth/ExactMath.hpp"
#include "loops/synth/Loudness.hpp"
#include "tests/loops/LoopFile.hpp"
#include "tests/loops/RecipeFile.hpp"

namespace tonewright::loops {
namespace {

constexpr int Count = 80;

double greatest(const std::vector<std::vector<float>>& channels) {
    float most = 0;
    for (const auto& channel : channels) {
        for (const float sample : channel) most = std::max(most, std::fabs(sample));
    }
    return static_cast<double>(most);
}

// Called by two threads.
void examine(int number) {
    SCOPED_TRACE("loop " + std::to_string(number));
    const Recipe recipe = recipeNumber(number);
    const Pcm pcm = render(recipe);
    const char* build = std::getenv("TONEWRIGHT_BUILD_DIR");
    const std::string file =
        std::string(build == nullptr ? "." : build) + "/share/tonewright/" + std::to_string(number) + ".m4a";
    EXPECT_LT(greatest(expectLoop(file, pcm, 12.0)), 1.0);
    EXPECT_NE(test::contentOf(file).find(recipe.title), std::string::npos);
    EXPECT_LE(greatest(pcm.channels), gainOfDecibels(-1.0));

    StereoBuffer loop(pcm.frames());
    std::copy(pcm.channels.front().begin(), pcm.channels.front().end(), loop.left.begin());
    std::copy(pcm.channels.back().begin(), pcm.channels.back().end(), loop.right.begin());
    EXPECT_NEAR(loudnessOf(loop, recipe.rate), TargetLoudness, 0.5);
    for (const std::vector<double>* channel : {&loop.left, &loop.right}) {
        double greatestStep = 0;
        for (std::size_t frame = 1; frame < channel->size(); ++frame) {
            greatestStep = std::max(greatestStep, std::fabs((*channel)[frame] - (*channel)[frame - 1]));
        }
        EXPECT_LE(std::fabs(channel->front() - channel->back()), greatestStep);
    }
}

TEST(Collection, LoopsExactlyAndAllEquallyLoud) {
    std::atomic<int> next = 1; // each thread takes the next number
    const auto work = [&] {
        for (int number = next++; number <= Count; number = next++) examine(number);
    };
    const std::jthread helper(work);
    work();
}

} // namespace
} // namespace tonewright::loops
