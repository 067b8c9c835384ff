// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The named instruments, as patches that differ from the plain ones in the numbers given.

#include "Instrument.hpp"

#include <array>

namespace tonewright::loops {

namespace {

using S = SubtractivePatch;
using F = FmPatch;
using P = PluckPatch;
using M = ModalPatch;
using O = OrganPatch;
using A = AirPatch;

struct Named {
    std::string_view name;
    Patch patch;
};

// A table is read by rows: one instrument after the other, not one number a line.
// clang-format off
constexpr std::array Instruments = std::to_array<Named>({
    // Basses
    {"deep-bass", S{.shape = 0, .shape2 = 1, .mix2 = .5, .cutoff = 900, .sweep = 1, .attack = .006,
        .decay = 1.5, .sustain = .8, .release = .09, .drive = .25}},
    {"round-bass", S{.shape = 1, .sub = .5, .cutoff = 500, .sweep = 2, .sweepdecay = .35, .decay = 1.2,
        .sustain = .6, .release = .08, .drive = .15}},
    {"saw-bass", S{.shape = 2, .shape2 = 3, .mix2 = .5, .sub = .5, .cutoff = 380, .reso = .3, .poles = 4,
        .sweep = 2.6, .sweepdecay = .4, .decay = 1, .sustain = .7, .release = .07, .drive = .3}},
    {"acid-bass", S{.shape = 2, .cutoff = 300, .reso = .86, .poles = 4, .sweep = 3.4, .sweepdecay = .28,
        .touch = 2, .decay = .9, .sustain = .5, .release = .05, .drive = .35}},
    {"growl-bass", S{.shape = 2, .unison = 3, .detune = 18, .spread = .3, .sub = .8, .cutoff = 450,
        .reso = .5, .poles = 4, .sweep = 3, .sweepdecay = .6, .sweepattack = .06, .decay = 2, .sustain = .8,
        .release = .1, .drive = .8, .vowel = .4}},
    {"reese-bass", S{.shape = 2, .unison = 5, .detune = 26, .spread = .5, .sub = .7, .cutoff = 700,
        .reso = .25, .poles = 4, .sweep = .6, .sweepdecay = 1.5, .attack = .01, .release = .12,
        .drive = .4}},
    {"square-bass", S{.shape = 3, .width = .35, .sub = .4, .cutoff = 700, .reso = .35, .poles = 4,
        .sweep = 2, .sweepdecay = .18, .decay = .6, .sustain = .5, .release = .05}},
    {"fm-bass", F{.ratio = 1, .index = 3.2, .indexdecay = .35, .indexfloor = .12, .ratio2 = 2, .index2 = .8,
        .index2decay = .1, .feedback = .3, .detune = 1, .decay = 1.4, .sustain = .5, .release = .07}},
    {"hollow-bass", F{.ratio = 2, .index = 1.8, .indexdecay = .5, .indexfloor = .3, .detune = 1,
        .decay = 1.6, .sustain = .6, .release = .09}},
    {"finger-bass", P{.decay = 2.6, .bright = .35, .pick = 1600, .position = .17, .body = .5,
        .bodytone = 110, .release = .09, .drive = .1}},
    {"slap-bass", P{.decay = 2.2, .bright = .8, .pick = 9000, .position = .08, .body = .4, .bodytone = 120,
        .release = .06, .drive = .25}},
    {"upright-bass", P{.decay = 1.5, .bright = .25, .pick = 1100, .position = .3, .body = .9,
        .bodytone = 95, .release = .12}},
    // Keys and chords
    {"tine-piano", F{.ratio = 1, .index = 1.1, .indexdecay = 1.2, .indexfloor = .25, .ratio2 = 14,
        .index2 = .55, .index2decay = .18, .detune = 4, .decay = 4, .sustain = .3, .release = .25}},
    {"reed-piano", F{.ratio = 1, .index = 1.9, .indexdecay = .9, .indexfloor = .35, .ratio2 = 3,
        .index2 = .5, .index2decay = .3, .feedback = .2, .detune = 3, .decay = 3, .sustain = .35,
        .release = .14}},
    {"organ", O{}},
    {"chapel-organ", O{.bar16 = .6, .bar5 = .2, .bar8 = 1, .bar4 = .7, .bar3 = .3, .bar2 = .5, .bar1 = .3,
        .click = .02, .attack = .04, .release = .18, .leak = .04}},
    {"clavinet", P{.decay = 1.6, .bright = .85, .pick = 9000, .position = .11, .body = .5, .bodytone = 600,
        .release = .03, .drive = .4}},
    {"house-stab", S{.shape = 2, .shape2 = 3, .mix2 = .6, .unison = 3, .detune = 9, .cutoff = 900,
        .reso = .3, .sweep = 2.6, .sweepdecay = .22, .decay = .5, .sustain = .2, .release = .12}},
    {"super-saw", S{.shape = 2, .unison = 7, .detune = 22, .spread = .9, .cutoff = 4200, .reso = .1,
        .sweep = .8, .sweepdecay = .8, .highpass = 140, .attack = .008, .release = .25}},
    {"warm-pad", S{.shape = 2, .shape2 = 1, .mix2 = .6, .tune2 = -12, .unison = 5, .detune = 13,
        .cutoff = 900, .reso = .12, .sweep = .8, .sweepdecay = 5, .sweepattack = .9, .attack = .5,
        .release = 1.2}},
    {"glass-pad", F{.ratio = 3, .index = .9, .indexdecay = 4, .indexfloor = .4, .ratio2 = 5, .index2 = .35,
        .index2decay = 2, .detune = 9, .attack = .4, .decay = 6, .sustain = .8, .release = 1.6,
        .vibrato = 5, .vibratorate = 4}},
    {"strings", S{.shape = 2, .unison = 7, .detune = 15, .spread = .8, .cutoff = 2600, .reso = .05,
        .sweep = .5, .sweepdecay = 3, .sweepattack = .4, .highpass = 120, .attack = .16, .release = .5,
        .vibrato = 9, .vibratorate = 5.4, .vibratodelay = .3}},
    {"choir", S{.shape = 2, .unison = 6, .detune = 17, .spread = .9, .noise = .04, .cutoff = 3800,
        .attack = .28, .release = .7, .vibrato = 14, .vibratorate = 4.9, .vibratodelay = .4, .vowel = .2}},
    {"brass", S{.shape = 2, .unison = 3, .detune = 7, .spread = .5, .cutoff = 500, .reso = .1, .sweep = 2.3,
        .sweepdecay = 1.6, .sweepattack = .05, .touch = 1.4, .attack = .03, .decay = 2, .sustain = .8,
        .release = .12, .vibrato = 7, .vibratodelay = .4}},
    {"hollow-keys", S{.shape = 3, .shape2 = 1, .mix2 = .5, .tune2 = 12, .cutoff = 1300, .reso = .15,
        .sweep = 1.4, .sweepdecay = .5, .decay = 1.4, .sustain = .25, .release = .2}},
    // Plucked and struck
    {"nylon-guitar", P{.decay = 2.8, .bright = .45, .pick = 3200, .position = .22, .body = .6,
        .bodytone = 190, .release = .3}},
    {"steel-guitar", P{.decay = 3.6, .bright = .8, .pick = 8000, .position = .14, .body = .35,
        .bodytone = 210, .release = .25}},
    {"muted-guitar", P{.decay = .35, .bright = .35, .pick = 4000, .position = .12, .body = .4,
        .bodytone = 240, .release = .06, .drive = .2}},
    {"harp", P{.decay = 4, .bright = .55, .pick = 4500, .position = .4, .body = .3, .bodytone = 260,
        .release = 1.2}},
    {"zither", P{.decay = 3, .bright = .92, .pick = 12000, .position = .07, .body = .25, .bodytone = 480,
        .release = .8}},
    {"marimba", M{.material = 0, .decay = .9, .damping = .9, .hardness = .45, .click = .12, .release = .4}},
    {"glockenspiel", M{.material = 1, .decay = 3.2, .damping = .7, .hardness = .6, .click = .05,
        .release = 1.2}},
    {"vibraphone", M{.material = 2, .decay = 4, .damping = .8, .hardness = .4, .click = .05, .tremolo = .35,
        .tremolorate = 5.3, .release = .5}},
    {"church-bell", M{.material = 3, .decay = 5, .damping = .5, .hardness = .6, .click = .05,
        .release = 2}},
    {"glass-bowl", M{.material = 4, .decay = 5, .damping = .6, .hardness = .4, .click = 0, .release = 2,
        .attack = .03}},
    {"kalimba", M{.material = 5, .decay = 1.5, .damping = .7, .hardness = .5, .click = .16, .release = .5}},
    {"fm-bell", F{.ratio = 3.5, .index = 2.2, .indexdecay = 1.4, .indexfloor = 0, .ratio2 = 9.1,
        .index2 = .5, .index2decay = .2, .detune = 5, .attack = .001, .decay = 2.6, .sustain = 0,
        .release = 1}},
    {"pizzicato", S{.shape = 2, .unison = 3, .detune = 8, .spread = .5, .cutoff = 700, .sweep = 2.2,
        .sweepdecay = .12, .highpass = 150, .attack = .002, .decay = .28, .sustain = 0, .release = .2}},
    // Leads
    {"saw-lead", S{.shape = 2, .unison = 3, .detune = 9, .spread = .4, .cutoff = 2600, .reso = .25,
        .sweep = 1.2, .sweepdecay = .4, .highpass = 150, .sustain = .8, .release = .14, .vibrato = 14,
        .vibratodelay = .25}},
    {"square-lead", S{.shape = 3, .width = .4, .cutoff = 3000, .reso = .2, .sweep = .8, .sweepdecay = .3,
        .decay = .8, .sustain = .7, .release = .1, .vibrato = 12, .vibratodelay = .2}},
    {"chip-lead", S{.shape = 3, .width = .25, .cutoff = 9000, .touch = 0, .attack = .001, .decay = .5,
        .sustain = .6, .release = .03, .vibrato = 18, .vibratorate = 6.5, .vibratodelay = .15,
        .glide = .03}},
    {"sine-lead", S{.shape = 0, .shape2 = 1, .mix2 = .25, .tune2 = 12, .cutoff = 5000, .attack = .02,
        .release = .2, .vibrato = 16, .vibratodelay = .2, .glide = .11}},
    {"flute", S{.shape = 1, .shape2 = 0, .mix2 = .3, .tune2 = 12, .noise = .05, .cutoff = 2200, .sweep = .4,
        .sweepdecay = .3, .highpass = 180, .attack = .05, .decay = 1, .sustain = .85, .release = .12,
        .vibrato = 12, .vibratorate = 4.8, .vibratodelay = .3}},
    {"reed", F{.ratio = 2, .index = 1.5, .indexdecay = 2, .indexfloor = .7, .ratio2 = 1, .index2 = .9,
        .index2decay = 4, .feedback = .2, .detune = 2, .attack = .04, .sustain = .85, .release = .1,
        .vibrato = 9}},
    {"muted-trumpet", S{.shape = 3, .width = .18, .cutoff = 1700, .reso = .45, .sweep = 1, .sweepdecay = .5,
        .sweepattack = .03, .touch = 1.2, .highpass = 350, .attack = .03, .sustain = .85, .release = .09,
        .vibrato = 13}},
    {"bowed", S{.shape = 2, .cutoff = 1900, .reso = .15, .sweep = .5, .sweepdecay = 1, .sweepattack = .1,
        .highpass = 160, .attack = .09, .release = .18, .vibrato = 17, .vibratorate = 5.6,
        .vibratodelay = .22, .glide = .08}},
    {"whistle", S{.shape = 0, .noise = .02, .cutoff = 6000, .highpass = 400, .attack = .04, .release = .12,
        .vibrato = 22, .vibratorate = 5.7, .glide = .09}},
    // Textures
    {"drone", S{.shape = 2, .shape2 = 2, .mix2 = .7, .tune2 = 7.02, .unison = 7, .detune = 11, .spread = 1,
        .sub = .5, .cutoff = 420, .reso = .3, .poles = 4, .sweep = 1.6, .sweepdecay = 9, .sweepattack = 3,
        .attack = 1.5, .release = 2.5}},
    {"wind", A{.cutoff = 700, .reso = .75, .track = .5, .flutter = .5, .flutterrate = .4, .attack = 1,
        .release = 1.5}},
    {"breath", A{.cutoff = 2400, .reso = .35, .flutter = .3, .flutterrate = .8, .attack = .4,
        .release = .6}},
    {"surf", A{.cutoff = 500, .reso = .15, .sweep = 2.4, .flutter = .3, .flutterrate = .3, .attack = 1.6,
        .release = 2.4}},
    {"riser", A{.cutoff = 300, .reso = .6, .sweep = 5, .attack = 2, .release = .1}},
    {"hiss", A{.cutoff = 7000, .reso = .05, .flutter = .1, .flutterrate = .2, .attack = .5, .release = .5}},
});
// clang-format on

} // namespace

std::optional<Patch> instrumentNamed(std::string_view name) {
    for (const Named& one : Instruments) {
        if (one.name == name) {
            return one.patch;
        }
    }
    return std::nullopt;
}

std::string instrumentNames() {
    std::string names;
    for (const Named& one : Instruments) {
        names += (names.empty() ? "" : ", ") + std::string(one.name);
    }
    return names;
}

} // namespace tonewright::loops
