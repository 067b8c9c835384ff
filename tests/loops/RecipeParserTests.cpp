// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// What the recipe format takes and what it refuses.

#include "RecipeFile.hpp"
#include "loops/synth/RecipeParser.hpp"

#include <gtest/gtest.h>

namespace tonewright::loops {
namespace {

struct Refusal {
    std::string_view name;
    std::string_view text;
    std::size_t line;
    std::string_view part; // of the message
};

class Refused : public testing::TestWithParam<Refusal> {};

TEST_P(Refused, SaysWhereAndWhy) {
    const auto read = parseRecipe(GetParam().text, soundsOfTheTree());
    const auto* fault = std::get_if<LineFault>(&read);
    ASSERT_NE(fault, nullptr);
    EXPECT_EQ(fault->line, GetParam().line) << fault->message;
    EXPECT_NE(fault->message.find(GetParam().part), std::string::npos) << fault->message;
    EXPECT_EQ(fault->message.find('\n'), std::string::npos);
}

INSTANTIATE_TEST_SUITE_P(
    Recipes, Refused,
    testing::Values(
        Refusal{"empty", "", 0, "no part"}, Refusal{"headOnly", "title A\ntempo 120\n", 0, "no part"},
        Refusal{"unknownWord", "title A\n\n# note\nvolume 3\n", 4, "unknown word 'volume'"},
        Refusal{"tempoText", "tempo fast\n", 1, "one number is expected"},
        Refusal{"tempoRange", "tempo 500\n", 1, "between 40 and 240"},
        Refusal{"tempoNotANumber", "tempo nan\n", 1, "one number is expected"},
        Refusal{"barsFraction", "bars 2.5\n", 1, "whole number"},
        Refusal{"rate", "rate 46000\n", 1, "44100 or 48000"},
        Refusal{"metre", "metre 4/5\n", 1, "a metre is one of"},
        Refusal{"keyNote", "key H minor\n", 1, "unknown note 'H'"},
        Refusal{"keyScale", "key D doric\n", 1, "unknown scale 'doric'"},
        Refusal{"chord", "chords Dm9 | Hm\n", 1, "unknown chord 'Hm'"},
        Refusal{"chordBass", "chords C/X\n", 1, "unknown chord 'C/X'"},
        Refusal{"chordRepeat", "chords % | C\n", 1, "none before it"},
        Refusal{"chordBarEmpty", "chords C | | D\n", 1, "a bar without a chord"},
        Refusal{"chordsMany", "bars 1\ntempo 100\nchords C | D\nplay organ\nhits x\n", 0, "only 1 bars"},
        Refusal{"roomSetting", "room colour=3\n", 1, "there is no setting 'colour'"},
        Refusal{"kit", "drums tin\n", 1, "unknown kit 'tin'"},
        Refusal{"instrument", "play kazoo\n", 1, "unknown instrument 'kazoo'"},
        Refusal{"instrumentSetting", "play organ cutoff=3\n", 1, "there is no setting 'cutoff'"},
        Refusal{"settingRange", "play saw-bass reso=2\n", 1, "'reso' must lie between 0 and 0.97"},
        Refusal{"settingForm", "play saw-bass reso\n", 1, "settings look like"},
        Refusal{"drum", "drums dusty\ngong x...\n", 2, "unknown word 'gong'"},
        Refusal{"stroke", "drums dusty\nkick x..q\n", 2, "'q' is no drum stroke"},
        Refusal{"rowEmpty", "drums dusty\nkick |\n", 2, "at least one step"},
        Refusal{"tuneFirst", "drums dusty\ntune kick pitch=50\n", 2, "no row 'kick'"},
        Refusal{"note", "play organ\nline 1 two 3\n", 2, "'two' is no note"},
        Refusal{"noteHuge", "play organ\nline 99999999999\n", 2, "is no note"},
        Refusal{"chordStep", "play organ\nhits xy\n", 2, "'y' is no chord step"},
        Refusal{"lineAndHits", "play organ\nline 1\nhits x\n", 3, "either lines or hits"},
        Refusal{"effect", "play organ\nfx fuzz\n", 2, "unknown effect 'fuzz'"},
        Refusal{"grid", "play organ\ngrid 1/5\n", 2, "a grid is"},
        Refusal{"from", "play organ\nfrom bass\n", 2, "'from' is"},
        Refusal{"noNotes", "bars 2\nplay organ\nplay harp\nline 1\n", 2, "no notes"},
        Refusal{"noChords", "bars 2\nplay organ\nhits x\n", 2, "no 'chords'"},
        Refusal{"rowLong", "bars 1\ntempo 100\ndrums dusty\nkick x...x...x...x...x\n", 3, "17 steps"},
        Refusal{"slideNowhere", "play organ\nline 1 . ~5 .\n", 1, "no note sounds before it"},
        Refusal{"short", "bars 1\ntempo 240\ndrums dusty\nkick x\n", 0, "from 2 to 16"},
        Refusal{"long", "bars 32\ndrums dusty\nkick x\n", 0, "from 2 to 16"}),
    [](const auto& one) { return std::string(one.param.name); });

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
    const struct {
        std::string_view text;
        std::size_t line;
        std::string_view part;
    } Cases[] = {
        {"kick membrane\n", 1, "unknown word 'kick'"},
        {"instrument a\n", 1, "a name and a kind"},
        {"instrument a fm\n\ninstrument a air\n", 3, "'a' already"},
        {"instrument a harp\n", 1, "unknown kind 'harp'"},
        {"instrument a fm index=fast\n", 1, "'index=fast' is not a setting"},
        {"kit a\nkick clap pitch=50\n", 2, "no setting 'pitch'"},
        {"kit a\nkick metal level=90\n", 2, "between -40 and 20"},
        {"kit a\nkick metal\nkit b\nhat metal\n", 4, "the first kit has no drum 'hat'"},
    };
    for (const auto& one : Cases) {
        const auto fault = SoundLibrary().read(one.text);
        ASSERT_TRUE(fault) << one.text;
        EXPECT_EQ(fault->line, one.line) << fault->message;
        EXPECT_NE(fault->message.find(one.part), std::string::npos) << fault->message;
    }
}

} // namespace
} // namespace tonewright::loops
