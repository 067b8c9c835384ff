// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests the conversion of steps to notes and frames: keys, chords, lengths, swing, slides, ties across the
// loop's end, rolls.
#include "loops/synth/Sequencer.hpp"
#include "tests/loops/RecipeFile.hpp"

namespace tonewright::loops {
namespace {

constexpr std::string_view Head = "tempo 120\nbars 1\nkey C major\nchords C\n"; // 2 s: 88,200 frames

std::vector<TimedNote> notes(const std::string& part) {
    const Recipe recipe = recipeOf(std::string(Head) + part);
    return notesOf(recipe, recipe.tracks.at(0));
}

TEST(Sequencer, PutsStepsOnTheirFrames) {
    const auto played = notes("play organ\nhuman 0\ngate 1\nline 1 - . 5\n");
    ASSERT_EQ(played.size(), 8U); // a pattern of four steps, repeated four times
    EXPECT_EQ(played[0].frame, 0U);
    EXPECT_EQ(played[0].note.note, 60.0);
    EXPECT_EQ(played[1].frame, 88200U * 3 / 16 + 1); // 16,537.5 rounded
    EXPECT_EQ(played[1].note.note, 67.0);
    EXPECT_EQ(played[0].note.gateFrames, 11025U);
    const auto swung =
        notes("swing 75 1/8\nplay organ\nhuman 0\nline 1 2 3 4\n"); // sixteenths, swung by eighths
    EXPECT_EQ(swung[1].frame, 8269U);                               // 3/8 of a quarter
    EXPECT_EQ(swung[3].frame, 19294U);                              // 7/8 of a quarter
}

TEST(Sequencer, HoldsAndSlidesBelongToTheNoteBeforeAlsoRoundTheEnd) {
    const auto held = notes("play organ\nhuman 0\ngate 1\ngrid 1/4\nline - . . 5\n");
    ASSERT_EQ(held.size(), 1U);
    EXPECT_EQ(held[0].frame, 66150U);
    EXPECT_EQ(held[0].note.gateFrames, 44100U); // one step before the seam and one after it
    const auto slid = notes("play sine-lead\nhuman 0\ngate 1\ngrid 1/4\nline 1 ~5 - .\n");
    ASSERT_EQ(slid.size(), 1U);
    ASSERT_EQ(slid[0].note.slides.size(), 1U);
    EXPECT_EQ(slid[0].note.slides[0].frame, 22050U);
    EXPECT_EQ(slid[0].note.slides[0].note, 67.0);
    EXPECT_EQ(slid[0].note.gateFrames, 66150U);
}

} // namespace
} // namespace tonewright::loops
