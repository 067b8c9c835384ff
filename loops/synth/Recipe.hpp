// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A recipe: all that makes a loop, as values. `parseRecipe` reads one from text; loops/README.md
// describes the format. Times inside are ticks, 960 to the quarter note.
#pragma once

#include "Drum.hpp"
#include "Effect.hpp"
#include "Harmony.hpp"
#include "Instrument.hpp"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tonewright::loops {

inline constexpr int TicksPerQuarter = 960;

/// A chord and how long it lasts.
struct ChordSpan {
    int startTick = 0;
    int endTick = 0;
    Chord chord;
};

/// One step of a drum row.
struct Hit {
    double velocity = 0.0; // 0: nothing
    int strokes = 1;       // spread evenly over the step
};

/// One drum's part.
struct DrumRow {
    std::string name;
    Drum drum;
    std::vector<Hit> hits; // repeated until the loop is full
};

/// One step of a pitched part.
struct Cell {
    enum class Kind { Rest, Hold, Notes, Slide };
    struct Degree {
        int number = 1;
        int alteration = 0; // semitones
    };
    Kind kind = Kind::Rest;
    std::vector<Degree> degrees;
    double velocity = 0.78;
    bool staccato = false;
};

/// What the numbers of a pitched part count.
enum class CountFrom {
    Key,     // degrees of the key's scale
    Root,    // degrees above the root of the chord that sounds
    Chord,   // tones of the chord, from its root up
    Voicing, // tones of the chord as it would be laid out
};

/// One part of the arrangement.
struct Track {
    std::size_t line = 0; // of the recipe, for messages
    bool drums = false;
    std::string name; // of the kit or instrument
    // Drums
    std::vector<DrumRow> rows;
    // Pitched
    Patch patch;
    std::vector<Cell> cells; // repeated until the loop is full
    bool chordal = false;    // every note of the cells stands for the whole chord
    CountFrom countFrom = CountFrom::Key;
    int octave = 4;
    int transpose = 0;
    Voicing voicing = Voicing::Close;
    int voices = 4;
    double strumSeconds = 0;
    double gate = 0.92;
    // Both
    int gridTicks = TicksPerQuarter / 4;
    double level = 0;   // decibels beside the other tracks while it sounds
    double pan = 0;     // -1 to 1
    double send = -100; // decibels into the room
    double human = 0.3; // how uneven time and force are, 0 to 1
    double swing = -1;  // percent; -1: the recipe's
    std::vector<Effect> effects;
};

/// A whole loop.
struct Recipe {
    std::string title;
    std::int64_t tempoThousandths = 120000; // quarter notes per minute, times 1000
    int beats = 4, unit = 4;                // the metre
    int bars = 4;
    Key key;
    int rate = 44100;
    int channels = 2;
    double swing = 50; // percent of a pair that its first half takes
    int swingTicks = TicksPerQuarter / 4;
    std::uint64_t seed = 1;
    double glue = 0.5; // of the compressor on the sum, 0 to 1
    Room room;
    std::vector<ChordSpan> chords;
    std::vector<Track> tracks;

    [[nodiscard]] int barTicks() const noexcept { return TicksPerQuarter * 4 * beats / unit; }
    [[nodiscard]] int ticks() const noexcept { return bars * barTicks(); }

    /// Returns the length in frames: whole, rounded to the nearest, computed in integers.
    [[nodiscard]] std::size_t frames() const noexcept {
        const std::int64_t numerator = std::int64_t{ticks()} * 60 * 1000 * rate;
        const std::int64_t denominator = std::int64_t{TicksPerQuarter} * tempoThousandths;
        return static_cast<std::size_t>((numerator + denominator / 2) / denominator);
    }
};

} // namespace tonewright::loops
