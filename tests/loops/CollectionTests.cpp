// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// All eighty loops, as the build made them, beside their recipes.

#include "DecodedLoop.hpp"
#include "RecipeFile.hpp"
#include "SeamError.hpp"
#include "tools/loops/synth/ExactMath.hpp"
#include "tools/loops/synth/Loudness.hpp"
#include "tools/loops/synth/Render.hpp"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <set>
#include <thread>

namespace tonewright::loops {
namespace {

constexpr int Count = 80;

TEST(Collection, HasTheVarietyItPromises) {
    std::set<std::string> titles;
    std::set<std::int64_t> tempi;
    std::map<std::pair<int, int>, int> metres;
    std::set<std::pair<int, std::vector<int>>> keys;
    int mono = 0;
    int fast = 0;
    int uneven = 0;
    double shortest = 1e9;
    double longest = 0;
    for (int number = 1; number <= Count; ++number) {
        const Recipe recipe = recipeNumber(number);
        const double seconds = static_cast<double>(recipe.frames()) / recipe.rate;
        EXPECT_FALSE(recipe.title.empty()) << number;
        EXPECT_TRUE(titles.insert(recipe.title).second) << recipe.title;
        tempi.insert(recipe.tempoThousandths);
        ++metres[{recipe.beats, recipe.unit}];
        keys.insert({recipe.key.root, recipe.key.scale});
        mono += recipe.channels == 1;
        fast += recipe.rate == 48000;
        uneven += recipe.frames() % 1024 != 0;
        shortest = std::min(shortest, seconds);
        longest = std::max(longest, seconds);
    }
    EXPECT_LE(*tempi.begin(), 70000);
    EXPECT_GE(*tempi.rbegin(), 174000);
    EXPECT_GE(tempi.size(), 20U);
    for (const auto& metre : {std::pair{4, 4}, {3, 4}, {6, 8}, {7, 8}, {5, 4}}) {
        EXPECT_GE(metres[metre], 3) << metre.first << "/" << metre.second;
    }
    EXPECT_GE(keys.size(), 25U);
    EXPECT_GE(mono, 5);
    EXPECT_GE(fast, 8);
    EXPECT_GE(uneven, 60);
    EXPECT_LE(shortest, 3.0);
    EXPECT_GE(longest, 15.0);
}

/// What one loop was found to be.
struct Finding {
    std::string fault;
    std::size_t frames = 0;
    std::int64_t statedFrames = 0;
    double loudness = 0;
    double peak = 0;
    double decodedPeak = 0;
    double seamStep = 0;
    double greatestStep = 0;
    SeamError error;
};

double greatest(const std::vector<std::vector<float>>& channels) {
    float most = 0;
    for (const auto& channel : channels) {
        for (const float sample : channel) most = std::max(most, std::fabs(sample));
    }
    return static_cast<double>(most);
}

Finding examine(int number) {
    const Recipe recipe = recipeNumber(number);
    const Pcm pcm = render(recipe);
    const char* build = std::getenv("TONEWRIGHT_BUILD_DIR");
    const DecodedLoop decoded = decodeLoop(std::string(build == nullptr ? "." : build) +
                                           "/share/tonewright/" + std::to_string(number) + ".m4a");
    Finding finding;
    finding.fault = decoded.fault;
    finding.frames = pcm.frames();
    finding.statedFrames = decoded.statedFrames;
    if (!finding.fault.empty()) return finding;
    if (decoded.rate != recipe.rate) finding.fault = "another rate";
    if (decoded.title != recipe.title) finding.fault = "another title";
    if (decoded.channels.size() != pcm.channels.size()) finding.fault = "other channels";
    if (decoded.statedFrames != static_cast<std::int64_t>(pcm.frames())) finding.fault = "another length";
    if (!finding.fault.empty()) return finding;

    StereoBuffer loop(pcm.frames());
    std::copy(pcm.channels.front().begin(), pcm.channels.front().end(), loop.left.begin());
    std::copy(pcm.channels.back().begin(), pcm.channels.back().end(), loop.right.begin());
    finding.loudness = loudnessOf(loop, recipe.rate);
    finding.peak = greatest(pcm.channels);
    finding.decodedPeak = greatest(decoded.channels);
    for (const std::vector<double>* channel : {&loop.left, &loop.right}) {
        finding.seamStep = std::max(finding.seamStep, std::fabs(channel->front() - channel->back()));
        for (std::size_t frame = 1; frame < channel->size(); ++frame) {
            finding.greatestStep =
                std::max(finding.greatestStep, std::fabs((*channel)[frame] - (*channel)[frame - 1]));
        }
    }
    finding.error = seamError(pcm.channels, decoded.channels);
    return finding;
}

TEST(Collection, LoopsExactlyAndAllEquallyLoud) {
    std::vector<Finding> findings(Count + 1);
    std::atomic<int> next = 1; // each worker takes the next number and writes to its place alone
    const auto work = [&] {
        for (int number = next++; number <= Count; number = next++) {
            findings[static_cast<std::size_t>(number)] = examine(number);
        }
    };
    {
        const std::jthread helper(work);
        work();
    }
    double worst = -1e9;
    for (int number = 1; number <= Count; ++number) {
        const Finding& found = findings[static_cast<std::size_t>(number)];
        SCOPED_TRACE("loop " + std::to_string(number));
        ASSERT_EQ(found.fault, "");
        EXPECT_EQ(found.statedFrames, static_cast<std::int64_t>(found.frames));
        EXPECT_NEAR(found.loudness, TargetLoudness, 0.5);
        EXPECT_LE(found.peak, gainOfDecibels(-1.0));
        EXPECT_LT(found.decodedPeak, 1.0);
        EXPECT_LE(found.seamStep, found.greatestStep);
        EXPECT_LE(found.error.excess(), 3.0);
        EXPECT_GT(found.error.signalToNoise, 12.0);
        worst = std::max(worst, found.error.excess());
    }
    RecordProperty("worst_seam_excess_decibels", std::to_string(worst));
    std::printf("worst seam: %+.1f dB against the rest of its loop\n", worst);
}

} // namespace
} // namespace tonewright::loops
