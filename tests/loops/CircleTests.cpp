// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A loop is a circle: it does not matter to the sound where it is cut.
#include "loops/synth/Effect.hpp"
#include "loops/synth/Loudness.hpp"
#include "loops/synth/Random.hpp"
#include "loops/synth/Render.hpp"
#include "tests/loops/RecipeFile.hpp"

namespace tonewright::loops {
namespace {

constexpr double Rate = 44100;
constexpr std::size_t Frames = 40007; // no multiple of anything
const EffectContext Context{.rate = Rate, .sixteenths = 16, .seed = 3, .kicks = {}};

/// A burst that ends with the loop, so that all tails have to go round.
StereoBuffer burst() {
    StereoBuffer loop(Frames);
    Random random(7);
    for (std::size_t frame = Frames - 6000; frame < Frames; ++frame) {
        loop.left[frame] = 0.4 * random.signedUnit();
        loop.right[frame] = 0.4 * random.signedUnit();
    }
    return loop;
}

StereoBuffer turned(StereoBuffer loop) {
    constexpr std::ptrdiff_t By = 23456;
    std::rotate(loop.left.begin(), loop.left.begin() + By, loop.left.end());
    std::rotate(loop.right.begin(), loop.right.begin() + By, loop.right.end());
    return loop;
}

double greatestDifference(const StereoBuffer& one, const StereoBuffer& other) {
    double greatest = 0;
    for (std::size_t frame = 0; frame < one.frames(); ++frame) {
        greatest = std::max({greatest, std::fabs(one.left[frame] - other.left[frame]),
                             std::fabs(one.right[frame] - other.right[frame])});
    }
    return greatest;
}

void expectIndifferentToTheCut(const std::function<void(StereoBuffer&)>& process) {
    StereoBuffer whole = burst(), cutElsewhere = turned(burst());
    process(whole);
    process(cutElsewhere);
    EXPECT_LT(greatestDifference(turned(whole), cutElsewhere), 2e-5);
    EXPECT_GT(greatestDifference(whole, burst()), 1e-3) << "nothing was done";
}

TEST(Circle, NothingThatIsDoneToALoopCaresForTheCut) {
    for (const char* name : {"drive", "lowpass", "bandpass", "highpass", "echo", "tone"}) {
        SCOPED_TRACE(name);
        std::optional<Effect> effect = effectNamed(name);
        ASSERT_TRUE(effect);
        if (Tone* tone = std::get_if<Tone>(&*effect)) *tone = {.low = 6, .high = -6, .width = 0.5};
        expectIndifferentToTheCut([&](StereoBuffer& loop) { applyEffect(loop, *effect, Context); });
    }
    expectIndifferentToTheCut([](StereoBuffer& loop) { applyRoom(loop, {.decay = 2.5, .size = 1.4}, Rate); });
    expectIndifferentToTheCut([](StereoBuffer& loop) { compress(loop, -30, 3, Rate); });
    expectIndifferentToTheCut([](StereoBuffer& loop) { limitPeaks(loop, 0.2, Rate); });
    StereoBuffer loop = burst();
    limitPeaks(loop, 0.1, Rate);
    EXPECT_LE(greatestDifference(loop, StereoBuffer(Frames)), 0.1 + 1e-9);
}

TEST(Circle, SwingingEffectsReturnToWhereTheyBegan) {
    // On a steady tone whose period fits, the seam may not be rougher than the rest.
    for (const char* name : {"chorus", "phaser", "tremolo", "lowpass"}) {
        StereoBuffer loop(44100);
        for (std::size_t frame = 0; frame < loop.frames(); ++frame) {
            loop.left[frame] = loop.right[frame] =
                std::sin(static_cast<double>(frame) * 0.0628318530717958648);
        }
        std::optional<Effect> effect = effectNamed(name);
        ASSERT_EQ(setEffect(*effect, "cycles", 3.4), ""); // played as three
        if (std::holds_alternative<Sweep>(*effect)) {
            EXPECT_EQ(setEffect(*effect, "to", 4000), "");
        }
        applyEffect(loop, *effect, Context);
        const auto bend = [&](std::size_t at) {
            const std::size_t count = loop.frames();
            return std::fabs(loop.left[(at + count - 1) % count] - 2 * loop.left[at] +
                             loop.left[(at + 1) % count]);
        };
        double inside = 0;
        for (std::size_t frame = 2; frame + 2 < loop.frames(); ++frame) {
            inside = std::max(inside, bend(frame));
        }
        EXPECT_LE(std::max(bend(0), bend(loop.frames() - 1)), inside * 1.01) << name;
    }
}

TEST(Circle, ATailSoundsOnAtTheBeginning) {
    const Pcm pcm = render(recipeOf("tempo 120\nbars 1\nkey C major\nroom decay=2\n"
                                    "play glockenspiel\nhuman 0\nsend -10\ngrid 1/4\nline . . . 1\n"));
    const auto& left = pcm.channels[0];
    EXPECT_GT(*std::max_element(left.begin(), left.begin() + 4000), 0.05F);
}

} // namespace
} // namespace tonewright::loops
