// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Keys, scales and chords: converts what a recipe says to MIDI note numbers. Pure functions.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

namespace tonewright::loops {

/// A tonic and the scale above it.
struct Key {
    int root = 0;                                 // pitch class: 0 is C
    std::vector<int> scale{0, 2, 4, 5, 7, 9, 11}; // semitones above the root, rising
};

/// A chord: its root, its tones above the root, and its bass note, which can be another tone (as in C/E).
struct Chord {
    int root = 0;
    std::vector<int> tones{0, 4, 7}; // semitones above the root, rising; ninths and above exceed 12
    int bass = 0;                    // pitch class
};

/// Reads a pitch class (a letter A to G with any number of # and b) and removes it from the front of `text`.
[[nodiscard]] std::optional<int> readPitchClass(std::string_view& text);

/// Returns the scale of that name ("dorian", "minor", "blues", ...), or no value.
[[nodiscard]] std::optional<std::vector<int>> scaleNamed(std::string_view name);

/// Reads a chord symbol: a root, a quality ("m9", "maj7", "7b9", "sus4", ...), and optionally "/bass".
[[nodiscard]] std::optional<Chord> chordNamed(std::string_view symbol);

/// Returns the note of `degree`, where 1 is the tonic in `octave`, 8 the tonic above, and 0 and negative
/// degrees lie below the tonic.
[[nodiscard]] int noteOfKey(const Key& key, int degree, int octave);

/// Returns the note of `degree` counted from the chord's root. Thirds, fifths and sevenths are those of the
/// chord; other degrees are taken from the key.
[[nodiscard]] int noteOfRoot(const Key& key, const Chord& chord, int degree, int octave);

/// Returns the `index`th tone of a rising chord (1 is the lowest); indices beyond the last tone continue an
/// octave higher.
[[nodiscard]] int noteOfChord(const std::vector<int>& rising, int index);

enum class Voicing { Close, DropTwo, Spread, Shell };

/// Voices a chord near `centre` with at most `voices` notes, moving as little as possible from `before`.
[[nodiscard]] std::vector<int> voiced(const Chord& chord, Voicing voicing, int voices, double centre,
                                      const std::vector<int>& before);

} // namespace tonewright::loops
