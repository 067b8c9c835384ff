// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// From written steps to frames: lengths, swing, slides, ties round the end, rolls.

#include "RecipeFile.hpp"
#include "loops/synth/Sequencer.hpp"

#include <gtest/gtest.h>

namespace tonewright::loops {
namespace {

constexpr std::string_view Head = "tempo 120\nbars 1\nkey C major\nchords C\n"; // 2 s: 88,200 frames

std::vector<TimedNote> notes(const std::string& part) {
    const Recipe recipe = recipeOf(std::string(Head) + part);
    return notesOf(recipe, recipe.tracks.at(0));
}

TEST(Sequencer, PutsStepsOnTheirFrames) {
    const auto played = notes("play organ\nhuman 0\ngate 1\nline 1 - . 5\n");
    ASSERT_EQ(played.size(), 8U); // a pattern of four steps, four times
    EXPECT_EQ(played[0].frame, 0U);
    EXPECT_EQ(played[0].note.note, 60.0);
    EXPECT_EQ(played[1].frame, 88200U * 3 / 16 + 1); // 16,537.5 rounded
    EXPECT_EQ(played[1].note.note, 67.0);
    EXPECT_EQ(played[0].note.gateFrames, 11025U);
}

TEST(Sequencer, SwingMovesEverySecondStepOnly) {
    const auto straight = notes("play organ\nhuman 0\ngrid 1/16\nline 1\n");
    const auto swung = notes("play organ\nhuman 0\nswing 60\ngrid 1/16\nline 1\n");
    ASSERT_EQ(straight.size(), swung.size());
    for (std::size_t index = 0; index < swung.size(); ++index) {
        const double late =
            static_cast<double>(swung[index].frame) - static_cast<double>(straight[index].frame);
        EXPECT_NEAR(late, index % 2 == 0 ? 0.0 : 88200.0 / 8 * 0.1, 1.0);
    }
}

TEST(Sequencer, HoldsGoOnRoundTheEnd) {
    const auto played = notes("play organ\nhuman 0\ngate 1\ngrid 1/4\nline - . . 5\n");
    ASSERT_EQ(played.size(), 1U);
    EXPECT_EQ(played[0].frame, 66150U);
    EXPECT_EQ(played[0].note.gateFrames, 44100U); // one step before the seam, one behind it
}

TEST(Sequencer, SlidesBelongToTheNoteBefore) {
    const auto played = notes("play sine-lead\nhuman 0\ngate 1\ngrid 1/4\nline 1 ~5 - .\n");
    ASSERT_EQ(played.size(), 1U);
    ASSERT_EQ(played[0].note.slides.size(), 1U);
    EXPECT_EQ(played[0].note.slides[0].frame, 22050U);
    EXPECT_EQ(played[0].note.slides[0].note, 67.0);
    EXPECT_EQ(played[0].note.gateFrames, 66150U);
}

TEST(Sequencer, StrumsAndRolls) {
    const auto chord = notes("play nylon-guitar\nhuman 0\nstrum 0.01\ngrid 1/1\nhits x\n");
    ASSERT_EQ(chord.size(), 3U);
    EXPECT_EQ(chord[2].frame - chord[0].frame, 882U);

    const Recipe recipe = recipeOf(std::string(Head) + "drums dusty\nhuman 0\ngrid 1/4\nsnare t...\n");
    const auto strokes = strokesOf(recipe, recipe.tracks[0], recipe.tracks[0].rows[0]);
    ASSERT_EQ(strokes.size(), 3U);
    EXPECT_EQ(strokes[1].frame, 7350U);
    EXPECT_LT(strokes[0].stroke.velocity, strokes[2].stroke.velocity);
}

} // namespace
} // namespace tonewright::loops
