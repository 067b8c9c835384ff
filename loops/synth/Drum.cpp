// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Drum.hpp"

#include <array>

namespace tonewright::loops {

namespace {

using Skin = MembranePatch;
using Snare = SnarePatch;
using Clap = ClapPatch;
using Metal = MetalPatch;
using Shaker = ShakerPatch;
using Wood = WoodPatch;

constexpr std::array<Setting<Skin>, 9> SkinSettings{{
    {.name = "pitch", .member = &Skin::pitch, .least = 20, .greatest = 1000},
    {.name = "fall", .member = &Skin::fall, .least = 0, .greatest = 72},
    {.name = "falltime", .member = &Skin::falltime, .least = 0.005, .greatest = 2},
    {.name = "decay", .member = &Skin::decay, .least = 0.02, .greatest = 4},
    {.name = "overtone", .member = &Skin::overtone, .least = 0, .greatest = 1},
    {.name = "click", .member = &Skin::click, .least = 0, .greatest = 2},
    {.name = "noise", .member = &Skin::noise, .least = 0, .greatest = 2},
    {.name = "tone", .member = &Skin::tone, .least = 100, .greatest = 16000},
    {.name = "drive", .member = &Skin::drive, .least = 0, .greatest = 3},
}};
constexpr std::array<Setting<Snare>, 9> SnareSettings{{
    {.name = "pitch", .member = &Snare::pitch, .least = 60, .greatest = 800},
    {.name = "body", .member = &Snare::body, .least = 0, .greatest = 2},
    {.name = "decay", .member = &Snare::decay, .least = 0.02, .greatest = 2},
    {.name = "noise", .member = &Snare::noise, .least = 0, .greatest = 2},
    {.name = "noisedecay", .member = &Snare::noisedecay, .least = 0.02, .greatest = 3},
    {.name = "low", .member = &Snare::low, .least = 50, .greatest = 8000},
    {.name = "high", .member = &Snare::high, .least = 500, .greatest = 18000},
    {.name = "snap", .member = &Snare::snap, .least = 0, .greatest = 2},
    {.name = "drive", .member = &Snare::drive, .least = 0, .greatest = 3},
}};
constexpr std::array<Setting<Clap>, 5> ClapSettings{{
    {.name = "bursts", .member = &Clap::bursts, .least = 1, .greatest = 8},
    {.name = "spacing", .member = &Clap::spacing, .least = 0.004, .greatest = 0.05},
    {.name = "decay", .member = &Clap::decay, .least = 0.02, .greatest = 3},
    {.name = "tone", .member = &Clap::tone, .least = 200, .greatest = 8000},
    {.name = "reso", .member = &Clap::reso, .least = 0, .greatest = 0.95},
}};
constexpr std::array<Setting<Metal>, 7> MetalSettings{{
    {.name = "pitch", .member = &Metal::pitch, .least = 60, .greatest = 4000},
    {.name = "decay", .member = &Metal::decay, .least = 0.01, .greatest = 6},
    {.name = "noise", .member = &Metal::noise, .least = 0, .greatest = 2},
    {.name = "highpass", .member = &Metal::highpass, .least = 100, .greatest = 15000},
    {.name = "ring", .member = &Metal::ring, .least = 0, .greatest = 2},
    {.name = "ringtone", .member = &Metal::ringtone, .least = 0.5, .greatest = 20},
    {.name = "attack", .member = &Metal::attack, .least = 0, .greatest = 5},
}};
constexpr std::array<Setting<Shaker>, 6> ShakerSettings{{
    {.name = "attack", .member = &Shaker::attack, .least = 0, .greatest = 2},
    {.name = "decay", .member = &Shaker::decay, .least = 0.005, .greatest = 3},
    {.name = "tone", .member = &Shaker::tone, .least = 200, .greatest = 16000},
    {.name = "reso", .member = &Shaker::reso, .least = 0, .greatest = 0.95},
    {.name = "highpass", .member = &Shaker::highpass, .least = 50, .greatest = 12000},
    {.name = "jingle", .member = &Shaker::jingle, .least = 0, .greatest = 2},
}};
constexpr std::array<Setting<Wood>, 4> WoodSettings{{
    {.name = "pitch", .member = &Wood::pitch, .least = 80, .greatest = 6000},
    {.name = "ratio", .member = &Wood::ratio, .least = 1, .greatest = 6},
    {.name = "decay", .member = &Wood::decay, .least = 0.005, .greatest = 2},
    {.name = "click", .member = &Wood::click, .least = 0, .greatest = 2},
}};

} // namespace

SettingFault setDrum(Drum& drum, std::string_view name, double value) {
    if (name == "level" || name == "pan") {
        constexpr std::array<Setting<Drum>, 2> Place{{
            {.name = "level", .member = &Drum::level, .least = -40, .greatest = 20},
            {.name = "pan", .member = &Drum::pan, .least = -1, .greatest = 1},
        }};
        return assign<Drum>(drum, Place, name, value);
    }
    struct Assign {
        std::string_view name;
        double value;
        SettingFault operator()(Skin& p) const { return assign<Skin>(p, SkinSettings, name, value); }
        SettingFault operator()(Snare& p) const { return assign<Snare>(p, SnareSettings, name, value); }
        SettingFault operator()(Clap& p) const { return assign<Clap>(p, ClapSettings, name, value); }
        SettingFault operator()(Metal& p) const { return assign<Metal>(p, MetalSettings, name, value); }
        SettingFault operator()(Shaker& p) const { return assign<Shaker>(p, ShakerSettings, name, value); }
        SettingFault operator()(Wood& p) const { return assign<Wood>(p, WoodSettings, name, value); }
    };
    return std::visit(Assign{name, value}, drum.patch);
}

} // namespace tonewright::loops
