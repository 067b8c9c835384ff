// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// From written steps to notes and frames: keys, chords, lengths, swing, slides, ties round the end, rolls.
#include "loops/synth/Harmony.hpp"
#include "loops/synth/Sequencer.hpp"
#include "tests/loops/RecipeFile.hpp"

namespace tonewright::loops {
namespace {

constexpr std::string_view Head = "tempo 120\nbars 1\nkey C major\nchords C\n"; // 2 s: 88,200 frames

std::vector<TimedNote> notes(const std::string& part) {
    const Recipe recipe = recipeOf(std::string(Head) + part);
    return notesOf(recipe, recipe.tracks.at(0));
}

TEST(Harmony, CountsDegreesFromTheTonicAndFromTheRoot) {
    const Key dorian{2, *scaleNamed("dorian")}, pentatonic{0, *scaleNamed("pentatonic")},
        minor{9, *scaleNamed("minor")};
    for (const auto& [degree, note] : std::map<int, int>{{1, 62}, {3, 65}, {8, 74}, {0, 60}, {-6, 50}}) {
        EXPECT_EQ(noteOfKey(dorian, degree, 4), note) << degree;
    }
    EXPECT_EQ(noteOfKey(pentatonic, 6, 4), 72); // five tones to the octave
    // The chord's major third, not the key's; but the key's second.
    for (const auto& [degree, note] : std::map<int, int>{{1, 40}, {3, 44}, {2, 41}, {7, 50}, {8, 52}}) {
        EXPECT_EQ(noteOfRoot(minor, *chordNamed("E7"), degree, 2), note) << degree;
    }
    EXPECT_EQ(noteOfRoot(minor, *chordNamed("C/G"), 1, 2), 43); // the bass that the symbol asks for
}

TEST(Harmony, ReadsChordsAndLaysThemOutNearWhereTheyWere) {
    EXPECT_EQ(chordNamed("Bbm9")->root, 10);
    EXPECT_EQ(chordNamed("Bbm9")->tones, (std::vector<int>{0, 3, 7, 10, 14}));
    EXPECT_EQ(chordNamed("F#7sus4/C#")->bass, 1);
    for (const char* wrong : {"", "m7", "Hm", "Cmajor", "C/", "C/G7"}) {
        EXPECT_FALSE(chordNamed(wrong)) << wrong;
    }
    for (const Voicing voicing : {Voicing::Close, Voicing::DropTwo, Voicing::Spread, Voicing::Shell}) {
        std::vector<int> before;
        for (const char* symbol : {"Dm9", "G13", "Cmaj9", "A7b9", "Dm9"}) {
            const std::vector<int> laid = voiced(*chordNamed(symbol), voicing, 4, 66.0, before);
            ASSERT_TRUE(laid.size() >= 2 && laid.size() <= 4 && std::is_sorted(laid.begin(), laid.end()));
            EXPECT_TRUE(laid.front() > 48 && laid.back() < 84) << symbol;
            if (!before.empty()) {
                EXPECT_LE(std::abs(laid.back() - before.back()), 7) << symbol;
            }
            before = laid;
        }
    }
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
        const auto late =
            static_cast<double>(swung[index].frame) - static_cast<double>(straight[index].frame);
        EXPECT_NEAR(late, index % 2 == 0 ? 0.0 : 88200.0 / 8 * 0.1, 1.0);
    }
}

TEST(Sequencer, HoldsAndSlidesBelongToTheNoteBeforeAlsoRoundTheEnd) {
    const auto held = notes("play organ\nhuman 0\ngate 1\ngrid 1/4\nline - . . 5\n");
    ASSERT_EQ(held.size(), 1U);
    EXPECT_EQ(held[0].frame, 66150U);
    EXPECT_EQ(held[0].note.gateFrames, 44100U); // one step before the seam, one after it
    const auto slid = notes("play sine-lead\nhuman 0\ngate 1\ngrid 1/4\nline 1 ~5 - .\n");
    ASSERT_EQ(slid.size(), 1U);
    ASSERT_EQ(slid[0].note.slides.size(), 1U);
    EXPECT_EQ(slid[0].note.slides[0].frame, 22050U);
    EXPECT_EQ(slid[0].note.slides[0].note, 67.0);
    EXPECT_EQ(slid[0].note.gateFrames, 66150U);
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
