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

constexpr std::array<Setting<Skin>, 9> SkinSettings{{{"pitch", &Skin::pitch, 20, 1000},
                                                     {"fall", &Skin::fall, 0, 72},
                                                     {"falltime", &Skin::falltime, 0.005, 2},
                                                     {"decay", &Skin::decay, 0.02, 4},
                                                     {"overtone", &Skin::overtone, 0, 1},
                                                     {"click", &Skin::click, 0, 2},
                                                     {"noise", &Skin::noise, 0, 2},
                                                     {"tone", &Skin::tone, 100, 16000},
                                                     {"drive", &Skin::drive, 0, 3}}};
constexpr std::array<Setting<Snare>, 9> SnareSettings{{{"pitch", &Snare::pitch, 60, 800},
                                                       {"body", &Snare::body, 0, 2},
                                                       {"decay", &Snare::decay, 0.02, 2},
                                                       {"noise", &Snare::noise, 0, 2},
                                                       {"noisedecay", &Snare::noisedecay, 0.02, 3},
                                                       {"low", &Snare::low, 50, 8000},
                                                       {"high", &Snare::high, 500, 18000},
                                                       {"snap", &Snare::snap, 0, 2},
                                                       {"drive", &Snare::drive, 0, 3}}};
constexpr std::array<Setting<Clap>, 5> ClapSettings{{{"bursts", &Clap::bursts, 1, 8},
                                                     {"spacing", &Clap::spacing, 0.004, 0.05},
                                                     {"decay", &Clap::decay, 0.02, 3},
                                                     {"tone", &Clap::tone, 200, 8000},
                                                     {"reso", &Clap::reso, 0, 0.95}}};
constexpr std::array<Setting<Metal>, 7> MetalSettings{{{"pitch", &Metal::pitch, 60, 4000},
                                                       {"decay", &Metal::decay, 0.01, 6},
                                                       {"noise", &Metal::noise, 0, 2},
                                                       {"highpass", &Metal::highpass, 100, 15000},
                                                       {"ring", &Metal::ring, 0, 2},
                                                       {"ringtone", &Metal::ringtone, 0.5, 20},
                                                       {"attack", &Metal::attack, 0, 5}}};
constexpr std::array<Setting<Shaker>, 6> ShakerSettings{{{"attack", &Shaker::attack, 0, 2},
                                                         {"decay", &Shaker::decay, 0.005, 3},
                                                         {"tone", &Shaker::tone, 200, 16000},
                                                         {"reso", &Shaker::reso, 0, 0.95},
                                                         {"highpass", &Shaker::highpass, 50, 12000},
                                                         {"jingle", &Shaker::jingle, 0, 2}}};
constexpr std::array<Setting<Wood>, 4> WoodSettings{{{"pitch", &Wood::pitch, 80, 6000},
                                                     {"ratio", &Wood::ratio, 1, 6},
                                                     {"decay", &Wood::decay, 0.005, 2},
                                                     {"click", &Wood::click, 0, 2}}};

} // namespace

SettingFault setDrum(Drum& drum, std::string_view name, double value) {
    if (name == "level" || name == "pan") {
        constexpr std::array<Setting<Drum>, 2> Place{
            {{"level", &Drum::level, -40, 20}, {"pan", &Drum::pan, -1, 1}}};
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
