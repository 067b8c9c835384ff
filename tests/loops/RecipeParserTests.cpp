// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Tests what the recipe format accepts and refuses.

#include "tests/loops/RecipeFile.hpp"

namespace tonewright::loops {
namespace {

struct Faulty {
    std::string_view text;
    std::size_t line;
    std::string_view part; // a part of the message
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
             {"drums dusty\nkick x..q\n", 2, "'q' is not a drum stroke"},
             {"drums dusty\nkick |\n", 2, "at least one step"},
             {"drums dusty\ntune kick pitch=50\n", 2, "no row 'kick'"},
             {"play organ\nline 1 two 3\n", 2, "'two' is not a note"},
             {"play organ\nhits xy\n", 2, "'y' is not a chord step"},
             {"play organ\nline 1\nhits x\n", 3, "either lines or hits"},
             {"play organ\nfx fuzz\n", 2, "unknown effect 'fuzz'"},
             {"play organ\ngrid 1/5\n", 2, "a grid is"},
             {"play organ\nfrom bass\n", 2, "'from' must be"},
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
