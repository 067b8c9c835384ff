// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The drums: six ways to synthesise a stroke, each with a plain struct of parameters. `renderStroke` is a
// pure function; it returns one stroke with its whole tail.
#pragma once

#include "Settings.hpp"
#include "StereoBuffer.hpp"

#include <cstdint>
#include <string_view>
#include <variant>

namespace tonewright::loops {

/// A drum skin: a sine of falling pitch, a click and some noise. For bass drums, toms and hand drums.
struct MembranePatch {
    double pitch = 50;                          // Hz, at the end of the fall
    double fall = 24;                           // semitones above `pitch` at the start of the fall
    double falltime = 0.06;                     // seconds to -60 dB
    double decay = 0.4;                         // seconds to -60 dB
    double overtone = 0;                        // level of a second mode at 1.59 times the pitch
    double click = 0.3, noise = 0, tone = 3000; // tone: cutoff of click and noise
    double drive = 0.2;
};

/// A skin with snare wires: two modes and a band of noise.
struct SnarePatch {
    double pitch = 185, body = 0.6, decay = 0.16;
    double noise = 0.8, noisedecay = 0.22;
    double low = 700, high = 9000; // band of the noise
    double snap = 0.4;
    double drive = 0.15;
};

/// Hand claps: bursts of noise that merge into one tail.
struct ClapPatch {
    double bursts = 3, spacing = 0.011; // seconds
    double decay = 0.2, tone = 1300, reso = 0.4;
};

/// Metal: six square waves at inharmonic ratios, high-passed, with noise. For hi-hats, cymbals and cowbells.
struct MetalPatch {
    double pitch = 320, decay = 0.06;
    double noise = 0.4, highpass = 7000;
    double ring = 0;     // level of two clear partials
    double ringtone = 3; // their ratio to the pitch
    double attack = 0.0005;
};

/// Grains: shaped noise. For shakers, brushes, tambourines and finger snaps.
struct ShakerPatch {
    double attack = 0.012, decay = 0.05;
    double tone = 6000, reso = 0.2, highpass = 2500;
    double jingle = 0; // level of ringing plates
};

/// Wood and stone: a few short modes. For rims, blocks and claves.
struct WoodPatch {
    double pitch = 900, ratio = 1.48, decay = 0.06, click = 0.4;
};

using DrumPatch = std::variant<MembranePatch, SnarePatch, ClapPatch, MetalPatch, ShakerPatch, WoodPatch>;

/// A drum of a kit: its sound and its place in the mix.
struct Drum {
    DrumPatch patch;
    double level = 0; // decibels
    double pan = 0;   // -1 left to 1 right
};

/// Sets one parameter of a drum (of its patch, or "level" or "pan"), or returns the reason why not.
[[nodiscard]] SettingFault setDrum(Drum& drum, std::string_view name, double value);

/// One stroke. `velocity` is from 0 to 1; at `gateFrames` another stroke chokes this one.
struct Stroke {
    double velocity = 0.8;
    std::size_t gateFrames = 0; // 0: never choked
    std::uint64_t seed = 1;
};

/// Renders one stroke at `rate` frames per second until it has died away; both channels are equal.
[[nodiscard]] StereoBuffer renderStroke(const DrumPatch& patch, const Stroke& stroke, double rate);

} // namespace tonewright::loops
