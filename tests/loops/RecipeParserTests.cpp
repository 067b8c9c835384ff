// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the recipe format takes and what it refuses.

#include "tests/loops/RecipeFile.hpp"

namespace tonewright::loops {
namespace {

struct Faulty {
    std::string_view text;
    std::size_t line;
    std::string_view part; // of the message
};

void expectFault(const Faulty& given, const LineFault* fault) {
    ASSERT_NE(fault, nullptr) << given.text;
    EXPECT_EQ(fault->line, given.line) << fault->message;
    EXPECT_NE(fault->message.find(given.part), std::string::npos) << fault->message;
    EXPECT_EQ(fault->message.find('\n'), std::string::npos);
}

TEST(RecipeParser, SaysWhereAndWhyItRefuses) {
    for (const Faulty& given : {
             Faulty{"", 0, "no part"},
             {"title A\n\n# note\nvolume 3\n", 4, "unknown word 'volume'"},
             {"tempo fast\n", 1, "one number is expected"},
             {"tempo 500\n", 1, "between 40 and 240"},
             {"bars 2.5\n", 1, "whole number"},
             {"rate 46000\n", 1, "44100 or 48000"},
             {"metre 4/5\n", 1, "a metre is one of"},
             {"key H minor\n", 1, "unknown note 'H'"},
             {"key D doric\n", 1, "unknown scale 'doric'"},
             {"chords Dm9 | Hm\n", 1, "unknown chord 'Hm'"},
             {"chords % | C\n", 1, "none before it"},
             {"chords C | | D\n", 1, "a bar without a chord"},
             {"bars 1\ntempo 100\nchords C | D\nplay organ\nhits x\n", 0, "only 1 bars"},
             {"play kazoo\n", 1, "unknown instrument 'kazoo'"},
             {"play saw-bass reso=2\n", 1, "'reso' must lie between 0 and 0.97"},
             {"play saw-bass reso\n", 1, "settings look like"},
             {"drums dusty\ngong x...\n", 2, "unknown word 'gong'"},
             {"drums dusty\nkick x..q\n", 2, "'q' is no drum stroke"},
             {"drums dusty\nkick |\n", 2, "at least one step"},
             {"drums dusty\ntune kick pitch=50\n", 2, "no row 'kick'"},
             {"play organ\nline 1 two 3\n", 2, "'two' is no note"},
             {"play organ\nhits xy\n", 2, "'y' is no chord step"},
             {"play organ\nline 1\nhits x\n", 3, "either lines or hits"},
             {"play organ\nfx fuzz\n", 2, "unknown effect 'fuzz'"},
             {"play organ\ngrid 1/5\n", 2, "a grid is"},
             {"play organ\nfrom bass\n", 2, "'from' is"},
             {"bars 2\nplay organ\nplay harp\nline 1\n", 2, "no notes"},
             {"bars 2\nplay organ\nhits x\n", 2, "no 'chords'"},
             {"bars 1\ntempo 100\ndrums dusty\nkick x...x...x...x...x\n", 3, "17 steps"},
             {"play organ\nline 1 . ~5 .\n", 1, "no note sounds before it"},
             {"bars 1\ntempo 240\ndrums dusty\nkick x\n", 0, "from 2 to 16"},
         }) {
        const auto read = parseRecipe(given.text, soundsOfTheTree());
        expectFault(given, std::get_if<LineFault>(&read));
    }
}

TEST(RecipeParser, ReadsEveryStatement) {
    const Recipe recipe =
        recipeOf("# a comment\r\n"
                 "title Two Words\r\n"
                 "tempo 92.5\nmetre 7/8\nbars 4\nkey F# dorian\nswing 58 1/8\nrate 48000\n"
                 "channels 1\nseed 9\nglue 0.25\nchords F#m9 | % | B7 E/G# | Amaj7\n"
                 "room decay=2 size=0.5\n"
                 "drums dusty\n  level -3\n  kick X.x.\n  kick o..t\n  tune kick pitch=61\n"
                 "play saw-bass cutoff=700\n  octave 2\n  from root\n  pan -0.5\n  send -12\n"
                 "  line 1! b3 ~5 - | 8'* 1+5? .\n  fx echo steps=4\n  chop x.x\n");
    EXPECT_EQ(recipe.title, "Two Words");
    EXPECT_EQ(recipe.tempoThousandths, 92500);
    EXPECT_EQ(recipe.key.root, 6);
    EXPECT_EQ(recipe.rate, 48000);
    EXPECT_EQ(recipe.swingTicks, TicksPerQuarter / 2);
    EXPECT_EQ(recipe.frames(),
              435892U); // 4 bars of 3.5 quarters: 14 * 60 / 92.5 s, rounded to the nearest frame
    ASSERT_EQ(recipe.chords.size(), 5U);
    EXPECT_EQ(recipe.chords[1].chord.tones, recipe.chords[0].chord.tones);
    EXPECT_EQ(recipe.chords[2].endTick - recipe.chords[2].startTick, recipe.barTicks() / 2);
    EXPECT_EQ(recipe.chords[3].chord.bass, 8);

    ASSERT_EQ(recipe.tracks.size(), 2U);
    const DrumRow& kick = recipe.tracks[0].rows.at(0);
    EXPECT_EQ(kick.hits.size(), 8U);
    EXPECT_EQ(kick.hits[7].strokes, 3);
    EXPECT_EQ(std::get<MembranePatch>(kick.drum.patch).pitch, 61.0);

    const Track& bass = recipe.tracks[1];
    EXPECT_EQ(std::get<SubtractivePatch>(bass.patch).cutoff, 700.0);
    EXPECT_EQ(bass.countFrom, CountFrom::Root);
    ASSERT_EQ(bass.cells.size(), 7U);
    EXPECT_EQ(bass.cells[1].degrees[0].alteration, -1);
    EXPECT_EQ(bass.cells[2].kind, Cell::Kind::Slide);
    EXPECT_EQ(bass.cells[4].degrees[0].alteration, 12);
    EXPECT_TRUE(bass.cells[4].staccato);
    EXPECT_EQ(bass.cells[5].degrees.size(), 2U);
    EXPECT_EQ(bass.effects.size(), 2U);
}

TEST(SoundLibrary, NamesTheFaultyLine) {
    for (const Faulty& given : {
             Faulty{"kick membrane\n", 1, "unknown word 'kick'"},
             {"instrument a\n", 1, "a name and a kind"},
             {"instrument a fm\n\ninstrument a air\n", 3, "'a' already"},
             {"instrument a harp\n", 1, "unknown kind 'harp'"},
             {"instrument a fm index=fast\n", 1, "'index=fast' is not a setting"},
             {"kit a\nkick clap pitch=50\n", 2, "no setting 'pitch'"},
             {"kit a\nkick metal level=90\n", 2, "between -40 and 20"},
             {"kit a\nkick metal\nkit b\nhat metal\n", 4, "the first kit has no drum 'hat'"},
         }) {
        const auto fault = SoundLibrary().read(given.text);
        expectFault(given, fault ? &*fault : nullptr);
    }
}

} // namespace
} // namespace tonewright::loops
