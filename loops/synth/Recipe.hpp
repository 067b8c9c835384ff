// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// A recipe: a complete description of a loop, as plain values. `parseRecipe` reads one from text;
// loops/README.md describes the format. Times are in ticks, 960 per quarter note.
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

/// A chord and the ticks between which it sounds.
struct ChordSpan {
    int startTick = 0;
    int endTick = 0;
    Chord chord;
};

/// One step of a drum row.
struct Hit {
    double velocity = 0.0; // 0: no stroke
    int strokes = 1;       // spread evenly over the step
};

/// The part of one drum.
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

/// The meaning of the numbers in the lines of a pitched part.
enum class CountFrom {
    Key,     // degrees of the key's scale
    Root,    // degrees of the key above the root of the current chord
    Chord,   // tones of the current chord, from its root up
    Voicing, // tones of the current chord in its voicing
};

/// One part of the arrangement.
struct Track {
    std::size_t line = 0; // line number in the recipe, for messages
    bool drums = false;
    std::string name; // name of the kit or instrument
    // For drums
    std::vector<DrumRow> rows;
    // For pitched parts
    Patch patch;
    std::vector<Cell> cells; // repeated until the loop is full
    bool chordal = false;    // every note of `cells` means the whole chord
    CountFrom countFrom = CountFrom::Key;
    int octave = 4;
    int transpose = 0;
    Voicing voicing = Voicing::Close;
    int voices = 4;
    double strumSeconds = 0;
    double gate = 0.92;
    // For both
    int gridTicks = TicksPerQuarter / 4;
    double level = 0;   // decibels relative to the other tracks, measured while it sounds
    double pan = 0;     // -1 to 1
    double send = -100; // decibels, level sent to the room
    double human = 0.3; // random variation in timing and force, 0 to 1
    double swing = -1;  // percent; -1 means the recipe's swing
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
    double swing = 50; // percentage of each pair of steps that the first one takes
    int swingTicks = TicksPerQuarter / 4;
    std::uint64_t seed = 1;
    double glue = 0.5; // amount of the compressor on the mix, 0 to 1
    Room room;
    std::vector<ChordSpan> chords;
    std::vector<Track> tracks;

    [[nodiscard]] int barTicks() const noexcept { return TicksPerQuarter * 4 * beats / unit; }
    [[nodiscard]] int ticks() const noexcept { return bars * barTicks(); }

    /// Returns the length in whole frames, rounded to nearest with integer arithmetic.
    [[nodiscard]] std::size_t frames() const noexcept {
        const std::int64_t numerator = std::int64_t{ticks()} * 60 * 1000 * rate;
        const std::int64_t denominator = std::int64_t{TicksPerQuarter} * tempoThousandths;
        return static_cast<std::size_t>((numerator + denominator / 2) / denominator);
    }
};

} // namespace tonewright::loops
