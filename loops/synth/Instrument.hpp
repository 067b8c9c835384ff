// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The pitched instruments: six ways to synthesise a note, each with a plain struct of parameters.
// `renderNote` is a pure function; it returns one note with its whole tail.
#pragma once

#include "Settings.hpp"
#include "StereoBuffer.hpp"

#include <cstdint>
#include <string_view>
#include <variant>
#include <vector>

namespace tonewright::loops {

/// A change of pitch within a note that is not struck again.
struct Slide {
    std::size_t frame = 0; // from the start of the note
    double note = 0.0;     // the MIDI note number that is reached
};

/// A note as an instrument plays it.
struct Note {
    double note = 60.0;         // MIDI note number; fractions are allowed
    double velocity = 0.8;      // 0 to 1
    std::size_t gateFrames = 1; // until the key is released
    std::uint64_t seed = 1;     // of all random variation within the note
    std::vector<Slide> slides;  // ordered by frame
};

/// Subtractive synthesis. Shapes: 0 sine, 1 triangle, 2 saw, 3 square.
struct SubtractivePatch {
    double shape = 2, shape2 = 2;
    double mix2 = 0;     // level of the second oscillator, 0 to 1
    double tune2 = 0;    // its tuning in semitones
    double width = 0.5;  // pulse width of the square
    double unison = 1;   // copies of the first oscillator
    double detune = 12;  // of the outermost copy, in cents
    double spread = 0.7; // of the copies across the stereo field
    double sub = 0;      // level of a sine an octave below
    double noise = 0;
    double cutoff = 2000, reso = 0.2, poles = 2;
    double sweep = 0;       // octaves by which the envelope opens the filter
    double sweepdecay = .3; // seconds to -60 dB
    double sweepattack = 0;
    double track = 0.3; // how far the cutoff follows the pitch, 0 to 1
    double touch = 0.5; // octaves of cutoff between soft and hard
    double highpass = 0;
    double attack = 0.004, decay = 1, sustain = 1, release = 0.12;
    double vibrato = 0, vibratorate = 5.2, vibratodelay = 0.25; // cents, Hz, seconds
    double drive = 0;
    double glide = 0.06; // seconds that a slide takes
    double vowel = -1;   // 0 a, 1 e, 2 i, 3 o, 4 u, fractions between; -1 none
};

/// Frequency modulation: one carrier and two modulators.
struct FmPatch {
    double ratio = 1, index = 2, indexdecay = 0.6, indexfloor = 0.1;
    double ratio2 = 7, index2 = 0, index2decay = 0.15;
    double feedback = 0;
    double carrier = 1;
    double touch = 0.7; // how much softer notes reduce the indices
    double detune = 3;  // cents between left and right
    double attack = 0.002, decay = 2, sustain = 0.6, release = 0.2;
    double vibrato = 0, vibratorate = 5, vibratodelay = 0.3;
    double glide = 0.05;
};

/// A plucked string: a delay line with a loss in its feedback.
struct PluckPatch {
    double decay = 2.5;    // seconds to -60 dB
    double bright = 0.6;   // brightness of the string, 0 to 1
    double pick = 5000;    // hardness of the pick, as a cutoff in Hz
    double position = 0.2; // position of the pick along the string, 0 to 1
    double body = 0.3;
    double bodytone = 180;
    double release = 0.15;
    double drive = 0;
    double glide = 0.05;
};

/// Struck bars, bells and bowls: a few decaying partials.
/// Materials: 0 wooden bar, 1 metal bar, 2 vibraphone, 3 bell, 4 glass bowl, 5 tine.
struct ModalPatch {
    double material = 0;
    double decay = 1;
    double damping = 0.6; // how much faster high partials decay
    double hardness = 0.5;
    double click = 0.1;
    double tremolo = 0, tremolorate = 5;
    double release = 0.3;
    double attack = 0;
};

/// An organ with drawbars: levels of the harmonics 1/2, 3/2, 1, 2, 3, 4, 5, 6, 8.
struct OrganPatch {
    double bar16 = .8, bar5 = 0, bar8 = .8, bar4 = .5, bar3 = 0, bar2 = .2, bar17 = 0, bar13 = 0, bar1 = 0;
    double click = 0.1;
    double attack = 0.005, release = 0.06;
    double vibrato = 0, vibratorate = 6.2;
    double leak = 0.02; // level of breath and wheel noise
};

/// Filtered noise with a pitch: wind, breath, surf, risers.
struct AirPatch {
    double cutoff = 1000, reso = 0.5, track = 0;
    double sweep = 0; // octaves by which the cutoff moves until the gate closes
    double flutter = 0, flutterrate = 0.7;
    double attack = 0.5, decay = 1, sustain = 1, release = 0.5;
    double wide = 1;
};

using Patch = std::variant<SubtractivePatch, FmPatch, PluckPatch, ModalPatch, OrganPatch, AirPatch>;

/// Sets one parameter of a patch, or returns the reason why not.
[[nodiscard]] SettingFault setPatch(Patch& patch, std::string_view name, double value);

/// Renders one note at `rate` frames per second until its tail has died away.
[[nodiscard]] StereoBuffer renderNote(const Patch& patch, const Note& note, double rate);

// One function per kind of patch; `renderNote` calls the one for its patch.
[[nodiscard]] StereoBuffer renderSubtractive(const SubtractivePatch& patch, const Note& note, double rate);
[[nodiscard]] StereoBuffer renderFm(const FmPatch& patch, const Note& note, double rate);
[[nodiscard]] StereoBuffer renderPluck(const PluckPatch& patch, const Note& note, double rate);
[[nodiscard]] StereoBuffer renderModal(const ModalPatch& patch, const Note& note, double rate);
[[nodiscard]] StereoBuffer renderOrgan(const OrganPatch& patch, const Note& note, double rate);
[[nodiscard]] StereoBuffer renderAir(const AirPatch& patch, const Note& note, double rate);

} // namespace tonewright::loops
