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

struct Member {
    std::string_view name;
    Drum drum;
};

// What every kit starts from; a kit below replaces some.
const auto& commonDrums() {
    static const std::array Table = std::to_array<Member>({
        {"kick", {Skin{}, 0, 0}},
        {"snare", {Snare{}, -4, 0}},
        {"rim", {Wood{.pitch = 480, .ratio = 3.5, .decay = .05, .click = .8}, -6, .15}},
        {"clap", {Clap{}, -5, 0}},
        {"snap", {Clap{.bursts = 2, .spacing = .007, .decay = .09, .tone = 2300, .reso = .6}, -6, -.1}},
        {"hat", {Metal{}, -13, .15}},
        {"openhat", {Metal{.decay = .45}, -14, .15}},
        {"pedal", {Metal{.decay = .09, .noise = .2, .highpass = 5000}, -16, .15}},
        {"ride",
         {Metal{.pitch = 430, .decay = 1.4, .noise = .15, .highpass = 5200, .ring = .05, .ringtone = 7.3},
          -18, -.3}},
        {"bell",
         {Metal{.pitch = 560, .decay = .9, .noise = .05, .highpass = 6500, .ring = .22, .ringtone = 2.1}, -16,
          -.3}},
        {"crash",
         {Metal{.pitch = 390, .decay = 2.2, .noise = .6, .highpass = 4200, .attack = .002}, -16, .3}},
        {"tomhigh",
         {Skin{.pitch = 165,
               .fall = 7,
               .falltime = .12,
               .decay = .35,
               .overtone = .3,
               .click = .2,
               .noise = .05},
          -5, .35}},
        {"tommid",
         {Skin{.pitch = 118,
               .fall = 7,
               .falltime = .14,
               .decay = .42,
               .overtone = .3,
               .click = .2,
               .noise = .05},
          -5, 0}},
        {"tomlow",
         {Skin{.pitch = 82,
               .fall = 7,
               .falltime = .16,
               .decay = .55,
               .overtone = .3,
               .click = .2,
               .noise = .05},
          -4, -.35}},
        {"cowbell",
         {Metal{.pitch = 540, .decay = .22, .noise = 0, .highpass = 700, .ring = .3, .ringtone = 1}, -15,
          .25}},
        {"shaker", {Shaker{}, -12, .35}},
        {"tambourine",
         {Shaker{.attack = .003, .decay = .14, .tone = 7800, .highpass = 4500, .jingle = .5}, -12, -.35}},
        {"brush", {Shaker{.attack = .05, .decay = .16, .tone = 4200, .highpass = 900}, -10, 0}},
        {"conga",
         {Skin{.pitch = 205,
               .fall = 3,
               .falltime = .03,
               .decay = .26,
               .overtone = .25,
               .click = .35,
               .tone = 1800,
               .drive = .1},
          -6, -.3}},
        {"congalow",
         {Skin{.pitch = 148,
               .fall = 3,
               .falltime = .03,
               .decay = .34,
               .overtone = .25,
               .click = .3,
               .tone = 1500,
               .drive = .1},
          -6, -.15}},
        {"slap",
         {Skin{.pitch = 240,
               .fall = 5,
               .falltime = .02,
               .decay = .09,
               .overtone = .6,
               .click = 1,
               .tone = 3600,
               .drive = .2},
          -8, -.3}},
        {"bongo",
         {Skin{.pitch = 340,
               .fall = 4,
               .falltime = .02,
               .decay = .14,
               .overtone = .3,
               .click = .4,
               .tone = 3000,
               .drive = .1},
          -8, .4}},
        {"block", {Wood{.pitch = 1050, .ratio = 1.42, .decay = .07}, -10, .3}},
        {"blocklow", {Wood{.pitch = 720, .ratio = 1.45, .decay = .08}, -10, -.3}},
        {"clave", {Wood{.pitch = 2450, .ratio = 1.02, .decay = .06, .click = .2}, -11, .25}},
        {"triangle",
         {Metal{.pitch = 1250, .decay = 1.1, .noise = 0, .highpass = 9000, .ring = .4, .ringtone = 3.2}, -22,
          .45}},
        {"udu",
         {Skin{.pitch = 92,
               .fall = 0,
               .falltime = .2,
               .decay = .4,
               .overtone = .15,
               .click = .15,
               .tone = 900,
               .drive = 0},
          -5, .1}},
    });
    return Table;
}

struct Kit {
    std::string_view name;
    std::vector<Member> members;
};

const std::vector<Kit>& kits() {
    static const std::vector<Kit> Table{
        {"studio", {}},
        {"dusty",
         {{"kick",
           {Skin{.pitch = 58,
                 .fall = 18,
                 .falltime = .05,
                 .decay = .26,
                 .click = .35,
                 .noise = .06,
                 .tone = 1800,
                 .drive = .7},
            0, 0}},
          {"snare",
           {Snare{.pitch = 198,
                  .body = .5,
                  .decay = .13,
                  .noise = .9,
                  .noisedecay = .17,
                  .low = 500,
                  .high = 5200,
                  .snap = .5,
                  .drive = .6},
            -4, 0}},
          {"hat", {Metal{.pitch = 290, .decay = .05, .noise = .6, .highpass = 5200}, -13, .1}},
          {"openhat", {Metal{.pitch = 290, .decay = .3, .noise = .6, .highpass = 5000}, -14, .1}}}},
        {"machine",
         {{"kick",
           {Skin{.pitch = 46,
                 .fall = 14,
                 .falltime = .09,
                 .decay = 1.1,
                 .click = .2,
                 .tone = 2200,
                 .drive = .25},
            0, 0}},
          {"snare",
           {Snare{.pitch = 178,
                  .body = .7,
                  .decay = .2,
                  .noise = .6,
                  .noisedecay = .18,
                  .low = 1100,
                  .high = 10000,
                  .snap = .3,
                  .drive = .05},
            -4, 0}},
          {"clap", {Clap{.bursts = 4, .spacing = .010, .decay = .3, .tone = 1050, .reso = .55}, -5, 0}},
          {"hat", {Metal{.pitch = 270, .decay = .045, .noise = .05, .highpass = 8200}, -11, .12}},
          {"openhat", {Metal{.pitch = 270, .decay = .5, .noise = .05, .highpass = 7600}, -13, .12}},
          {"tomlow",
           {Skin{.pitch = 78, .fall = 6, .falltime = .2, .decay = .8, .click = .1, .drive = .1}, -4, -.35}}}},
        {"club",
         {{"kick",
           {Skin{.pitch = 49,
                 .fall = 32,
                 .falltime = .055,
                 .decay = .42,
                 .click = .5,
                 .tone = 4500,
                 .drive = .8},
            0, 0}},
          {"snare",
           {Snare{.pitch = 205,
                  .body = .5,
                  .decay = .12,
                  .noise = 1,
                  .noisedecay = .2,
                  .low = 900,
                  .high = 12000,
                  .snap = .7,
                  .drive = .4},
            -5, 0}},
          {"clap", {Clap{.bursts = 3, .spacing = .009, .decay = .26, .tone = 1500, .reso = .3}, -4, 0}},
          {"hat", {Metal{.pitch = 360, .decay = .055, .noise = .5, .highpass = 8600}, -11, .1}},
          {"openhat", {Metal{.pitch = 360, .decay = .3, .noise = .6, .highpass = 8000}, -11, .1}}}},
        {"tight",
         {{"kick",
           {Skin{.pitch = 62,
                 .fall = 26,
                 .falltime = .03,
                 .decay = .2,
                 .click = .7,
                 .tone = 5200,
                 .drive = .5},
            0, 0}},
          {"snare",
           {Snare{.pitch = 235,
                  .body = .6,
                  .decay = .09,
                  .noise = .9,
                  .noisedecay = .13,
                  .low = 1200,
                  .high = 11000,
                  .snap = 1,
                  .drive = .4},
            -4, 0}},
          {"hat", {Metal{.pitch = 400, .decay = .03, .noise = .3, .highpass = 9000}, -11, .15}},
          {"openhat", {Metal{.pitch = 400, .decay = .22, .noise = .3, .highpass = 8500}, -12, .15}}}},
        {"brushes",
         {{"kick",
           {Skin{.pitch = 54,
                 .fall = 9,
                 .falltime = .05,
                 .decay = .32,
                 .overtone = .1,
                 .click = .12,
                 .noise = .03,
                 .tone = 1200,
                 .drive = 0},
            -2, 0}},
          {"snare",
           {Snare{.pitch = 190,
                  .body = .25,
                  .decay = .12,
                  .noise = .6,
                  .noisedecay = .26,
                  .low = 900,
                  .high = 7000,
                  .snap = .15,
                  .drive = 0},
            -5, -.05}},
          {"hat", {Metal{.pitch = 310, .decay = .05, .noise = .3, .highpass = 6000}, -14, .25}},
          {"ride",
           {Metal{.pitch = 455, .decay = 1.7, .noise = .12, .highpass = 4800, .ring = .07, .ringtone = 6.1},
            -15, -.25}}}},
        {"iron",
         {{"kick",
           {Skin{.pitch = 44,
                 .fall = 38,
                 .falltime = .045,
                 .decay = .5,
                 .overtone = .2,
                 .click = .9,
                 .noise = .2,
                 .tone = 3800,
                 .drive = 1.6},
            0, 0}},
          {"snare",
           {Snare{.pitch = 160,
                  .body = .8,
                  .decay = .2,
                  .noise = 1.1,
                  .noisedecay = .32,
                  .low = 400,
                  .high = 8000,
                  .snap = .9,
                  .drive = 1.4},
            -4, 0}},
          {"clap",
           {Metal{.pitch = 210, .decay = .3, .noise = .5, .highpass = 900, .ring = .3, .ringtone = 2.7}, -9,
            .2}},
          {"hat", {Metal{.pitch = 210, .decay = .05, .noise = .8, .highpass = 4500}, -11, .2}}}},
        {"cinema",
         {{"kick",
           {Skin{.pitch = 41,
                 .fall = 10,
                 .falltime = .1,
                 .decay = 1.4,
                 .overtone = .35,
                 .click = .3,
                 .noise = .25,
                 .tone = 900,
                 .drive = .5},
            0, 0}},
          {"snare",
           {Snare{.pitch = 140,
                  .body = .8,
                  .decay = .35,
                  .noise = .7,
                  .noisedecay = .5,
                  .low = 300,
                  .high = 6000,
                  .snap = .4,
                  .drive = .3},
            -3, 0}},
          {"tomhigh",
           {Skin{.pitch = 112,
                 .fall = 5,
                 .falltime = .12,
                 .decay = .7,
                 .overtone = .45,
                 .click = .4,
                 .noise = .15,
                 .tone = 1500,
                 .drive = .3},
            -3, .35}},
          {"tommid",
           {Skin{.pitch = 80,
                 .fall = 5,
                 .falltime = .14,
                 .decay = .9,
                 .overtone = .45,
                 .click = .4,
                 .noise = .15,
                 .tone = 1200,
                 .drive = .3},
            -2, 0}},
          {"tomlow",
           {Skin{.pitch = 58,
                 .fall = 5,
                 .falltime = .16,
                 .decay = 1.2,
                 .overtone = .45,
                 .click = .4,
                 .noise = .15,
                 .tone = 1000,
                 .drive = .3},
            -1, -.35}}}},
    };
    return Table;
}

} // namespace

bool isKit(std::string_view kit) {
    for (const Kit& one : kits()) {
        if (one.name == kit) return true;
    }
    return false;
}

std::string kitNames() {
    std::string names;
    for (const Kit& one : kits()) {
        names += (names.empty() ? "" : ", ") + std::string(one.name);
    }
    return names;
}

std::optional<Drum> drumNamed(std::string_view kit, std::string_view drum) {
    for (const Kit& one : kits()) {
        if (one.name != kit) continue;
        for (const Member& member : one.members) {
            if (member.name == drum) return member.drum;
        }
    }
    for (const Member& member : commonDrums()) {
        if (member.name == drum) return member.drum;
    }
    return std::nullopt;
}

std::string drumNames() {
    std::string names;
    for (const Member& member : commonDrums()) {
        names += (names.empty() ? "" : ", ") + std::string(member.name);
    }
    return names;
}

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
