// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Keys, degrees, chords and how they are laid out.

#include "loops/synth/Harmony.hpp"

#include <algorithm>
#include <cstdlib>
#include <gtest/gtest.h>

namespace tonewright::loops {
namespace {

TEST(Harmony, CountsDegreesUpAndDownFromTheTonic) {
    const Key dorian{2, *scaleNamed("dorian")};
    EXPECT_EQ(noteOfKey(dorian, 1, 4), 62);
    EXPECT_EQ(noteOfKey(dorian, 3, 4), 65);
    EXPECT_EQ(noteOfKey(dorian, 8, 4), 74);
    EXPECT_EQ(noteOfKey(dorian, 0, 4), 60);
    EXPECT_EQ(noteOfKey(dorian, -6, 4), 50);
    const Key pentatonic{0, *scaleNamed("pentatonic")};
    EXPECT_EQ(noteOfKey(pentatonic, 6, 4), 72); // five tones to the octave
}

TEST(Harmony, CountsFromTheRootInTheChordsOwnColours) {
    const Key minor{9, *scaleNamed("minor")};
    const Chord dominant = *chordNamed("E7");
    EXPECT_EQ(noteOfRoot(minor, dominant, 1, 2), 40);
    EXPECT_EQ(noteOfRoot(minor, dominant, 3, 2), 44); // the chord's major third, not the key's
    EXPECT_EQ(noteOfRoot(minor, dominant, 2, 2), 41); // the key's second
    EXPECT_EQ(noteOfRoot(minor, dominant, 7, 2), 50);
    EXPECT_EQ(noteOfRoot(minor, dominant, 8, 2), 52);
    EXPECT_EQ(noteOfRoot(minor, *chordNamed("C/G"), 1, 2), 43); // the bass that the symbol asks for
}

TEST(Harmony, ReadsChordSymbols) {
    EXPECT_EQ(chordNamed("Bbm9")->root, 10);
    EXPECT_EQ(chordNamed("Bbm9")->tones, (std::vector<int>{0, 3, 7, 10, 14}));
    EXPECT_EQ(chordNamed("F#7sus4/C#")->bass, 1);
    for (const char* wrong : {"", "m7", "Hm", "Cmajor", "C/", "C/G7"}) {
        EXPECT_FALSE(chordNamed(wrong)) << wrong;
    }
}

TEST(Harmony, LaysChordsOutNearWhereTheyWere) {
    for (const Voicing voicing : {Voicing::Close, Voicing::DropTwo, Voicing::Spread, Voicing::Shell}) {
        std::vector<int> before;
        for (const char* symbol : {"Dm9", "G13", "Cmaj9", "A7b9", "Dm9"}) {
            const std::vector<int> notes = voiced(*chordNamed(symbol), voicing, 4, 66.0, before);
            ASSERT_GE(notes.size(), 2U);
            ASSERT_LE(notes.size(), 4U);
            EXPECT_TRUE(std::is_sorted(notes.begin(), notes.end()));
            EXPECT_GT(notes.front(), 48);
            EXPECT_LT(notes.back(), 84);
            if (!before.empty()) {
                EXPECT_LE(std::abs(notes.back() - before.back()), 7) << symbol;
            }
            before = notes;
        }
    }
}

} // namespace
} // namespace tonewright::loops
