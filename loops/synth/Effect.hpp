// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The effects of a track. Each processes a whole loop as a circle: its state at the end equals its state at
// the start, and every oscillation has a whole number of periods in the loop. Pure functions.
#pragma once

#include "Settings.hpp"
#include "StereoBuffer.hpp"

#include <cstdint>
#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace tonewright::loops {

/// Overdrive at a constant level.
struct Drive {
    double amount = 0.4; // 0 to 3
    double tone = 9000;  // Hz, cutoff of the low-pass filter after the overdrive
    double mix = 1;
};

/// A filter whose cutoff can move between two frequencies. Modes: 0 low-pass, 1 band-pass, 2 high-pass.
struct Sweep {
    double mode = 0;
    double cutoff = 1000, to = 0; // Hz; a `to` of 0 means no movement
    double reso = 0.2;
    double cycles = 1; // per loop
    double shape = 0;  // 0 sine, 1 rising saw, 2 falling saw, 3 triangle
    double poles = 2;
};

struct Chorus {
    double depth = 3;  // milliseconds
    double delay = 12; // milliseconds
    double cycles = 4; // per loop
    double mix = 0.5;
};

struct Phaser {
    double low = 300, high = 2400; // Hz
    double cycles = 1;             // per loop
    double feedback = 0.5;
    double mix = 0.5;
};

/// Periodic changes of level or of panning.
struct Tremolo {
    double cycles = 16; // per loop
    double depth = 0.5;
    double pan = 0; // 1: alternates between left and right
};

/// An echo. `steps` is its delay in sixteenths.
struct Echo {
    double steps = 3;
    double feedback = 0.4;
    double mix = 0.3;
    double tone = 3500; // Hz
    double cross = 1;   // how much repeats alternate between the sides, 0 to 1
};

/// Reduces the bit depth and the sample rate.
struct Crush {
    double bits = 8;
    double hold = 4; // frames
    double mix = 1;
};

/// Lowers the level at every stroke of the bass drum.
struct Duck {
    double depth = 0.6;
    double time = 0.28; // seconds until the level has recovered
};

/// Replaces part of the loop by short grains taken from it.
struct Grains {
    double density = 24; // per second
    double size = 0.18;  // seconds
    double shift = 12;   // semitones by which some grains are raised
    double share = 0.3;  // fraction of the grains that are raised
    double mix = 0.6;
};

/// Mutes some sixteenths of the track.
struct Chop {
    std::vector<bool> open;
    double depth = 1;
};

/// Low and high shelves in decibels, and the width of the stereo field.
struct Tone {
    double low = 0, high = 0;
    double width = 1;
};

using Effect = std::variant<Drive, Sweep, Chorus, Phaser, Tremolo, Echo, Crush, Duck, Grains, Chop, Tone>;

/// Returns the named effect with its default parameters, or no value.
[[nodiscard]] std::optional<Effect> effectNamed(std::string_view name);

/// Returns the names of all effects, separated by commas.
[[nodiscard]] std::string effectNames();

/// Sets one parameter of an effect, or returns the reason why not.
[[nodiscard]] SettingFault setEffect(Effect& effect, std::string_view name, double value);

/// A stroke of the bass drum, at which `Duck` lowers the level.
struct Kick {
    std::size_t frame = 0;
    double velocity = 1.0;
};

/// Properties of the loop that effects need.
struct EffectContext {
    double rate = 44100;    // Hz
    double sixteenths = 64; // in the loop
    std::uint64_t seed = 1;
    std::vector<Kick> kicks;
};

/// Runs one effect over the loop in place.
void applyEffect(StereoBuffer& loop, const Effect& effect, const EffectContext& context);

/// The reverb that all tracks send to.
struct Room {
    double decay = 1.4;      // seconds to -60 dB
    double damp = 5500;      // Hz; frequencies above decay faster
    double predelay = 0.012; // seconds
    double size = 1;         // scales the delay lines
};

/// Sets one parameter of the room, or returns the reason why not.
[[nodiscard]] SettingFault setRoom(Room& room, std::string_view name, double value);

/// Replaces the sound that was sent to the room by the room's reverb.
void applyRoom(StereoBuffer& loop, const Room& room, double rate);

} // namespace tonewright::loops
