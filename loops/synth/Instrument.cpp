// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Instrument.hpp"

#include <array>
#include <utility>

namespace tonewright::loops {

namespace {

using S = SubtractivePatch;
using F = FmPatch;
using P = PluckPatch;
using M = ModalPatch;
using O = OrganPatch;
using A = AirPatch;

constexpr std::array<Setting<S>, 29> SubtractiveSettings{{
    {.name = "shape", .member = &S::shape, .least = 0, .greatest = 3},
    {.name = "shape2", .member = &S::shape2, .least = 0, .greatest = 3},
    {.name = "mix2", .member = &S::mix2, .least = 0, .greatest = 2},
    {.name = "tune2", .member = &S::tune2, .least = -36, .greatest = 36},
    {.name = "width", .member = &S::width, .least = 0.05, .greatest = 0.95},
    {.name = "unison", .member = &S::unison, .least = 1, .greatest = 7},
    {.name = "detune", .member = &S::detune, .least = 0, .greatest = 100},
    {.name = "spread", .member = &S::spread, .least = 0, .greatest = 1},
    {.name = "sub", .member = &S::sub, .least = 0, .greatest = 2},
    {.name = "noise", .member = &S::noise, .least = 0, .greatest = 2},
    {.name = "cutoff", .member = &S::cutoff, .least = 20, .greatest = 20000},
    {.name = "reso", .member = &S::reso, .least = 0, .greatest = 0.97},
    {.name = "poles", .member = &S::poles, .least = 2, .greatest = 4},
    {.name = "sweep", .member = &S::sweep, .least = -6, .greatest = 8},
    {.name = "sweepdecay", .member = &S::sweepdecay, .least = 0.01, .greatest = 20},
    {.name = "sweepattack", .member = &S::sweepattack, .least = 0, .greatest = 10},
    {.name = "track", .member = &S::track, .least = 0, .greatest = 1},
    {.name = "touch", .member = &S::touch, .least = 0, .greatest = 6},
    {.name = "highpass", .member = &S::highpass, .least = 0, .greatest = 5000},
    {.name = "attack", .member = &S::attack, .least = 0, .greatest = 10},
    {.name = "decay", .member = &S::decay, .least = 0.01, .greatest = 30},
    {.name = "sustain", .member = &S::sustain, .least = 0, .greatest = 1},
    {.name = "release", .member = &S::release, .least = 0.005, .greatest = 10},
    {.name = "vibrato", .member = &S::vibrato, .least = 0, .greatest = 200},
    {.name = "vibratorate", .member = &S::vibratorate, .least = 0.1, .greatest = 20},
    {.name = "vibratodelay", .member = &S::vibratodelay, .least = 0, .greatest = 5},
    {.name = "drive", .member = &S::drive, .least = 0, .greatest = 3},
    {.name = "glide", .member = &S::glide, .least = 0, .greatest = 2},
    {.name = "vowel", .member = &S::vowel, .least = -1, .greatest = 4},
}};

constexpr std::array<Setting<F>, 18> FmSettings{{
    {.name = "ratio", .member = &F::ratio, .least = 0, .greatest = 20},
    {.name = "index", .member = &F::index, .least = 0, .greatest = 12},
    {.name = "indexdecay", .member = &F::indexdecay, .least = 0.01, .greatest = 20},
    {.name = "indexfloor", .member = &F::indexfloor, .least = 0, .greatest = 1},
    {.name = "ratio2", .member = &F::ratio2, .least = 0, .greatest = 20},
    {.name = "index2", .member = &F::index2, .least = 0, .greatest = 8},
    {.name = "index2decay", .member = &F::index2decay, .least = 0.005, .greatest = 10},
    {.name = "feedback", .member = &F::feedback, .least = 0, .greatest = 1},
    {.name = "carrier", .member = &F::carrier, .least = 0.25, .greatest = 16},
    {.name = "touch", .member = &F::touch, .least = 0, .greatest = 1},
    {.name = "detune", .member = &F::detune, .least = 0, .greatest = 60},
    {.name = "attack", .member = &F::attack, .least = 0, .greatest = 10},
    {.name = "decay", .member = &F::decay, .least = 0.01, .greatest = 30},
    {.name = "sustain", .member = &F::sustain, .least = 0, .greatest = 1},
    {.name = "release", .member = &F::release, .least = 0.005, .greatest = 10},
    {.name = "vibrato", .member = &F::vibrato, .least = 0, .greatest = 200},
    {.name = "vibratorate", .member = &F::vibratorate, .least = 0.1, .greatest = 20},
    {.name = "glide", .member = &F::glide, .least = 0, .greatest = 2},
}};

constexpr std::array<Setting<P>, 9> PluckSettings{{
    {.name = "decay", .member = &P::decay, .least = 0.05, .greatest = 20},
    {.name = "bright", .member = &P::bright, .least = 0, .greatest = 1},
    {.name = "pick", .member = &P::pick, .least = 200, .greatest = 18000},
    {.name = "position", .member = &P::position, .least = 0.02, .greatest = 0.5},
    {.name = "body", .member = &P::body, .least = 0, .greatest = 2},
    {.name = "bodytone", .member = &P::bodytone, .least = 60, .greatest = 2000},
    {.name = "release", .member = &P::release, .least = 0.005, .greatest = 10},
    {.name = "drive", .member = &P::drive, .least = 0, .greatest = 3},
    {.name = "glide", .member = &P::glide, .least = 0, .greatest = 2},
}};

constexpr std::array<Setting<M>, 9> ModalSettings{{
    {.name = "material", .member = &M::material, .least = 0, .greatest = 5},
    {.name = "decay", .member = &M::decay, .least = 0.02, .greatest = 20},
    {.name = "damping", .member = &M::damping, .least = 0, .greatest = 3},
    {.name = "hardness", .member = &M::hardness, .least = 0, .greatest = 1},
    {.name = "click", .member = &M::click, .least = 0, .greatest = 2},
    {.name = "tremolo", .member = &M::tremolo, .least = 0, .greatest = 1},
    {.name = "tremolorate", .member = &M::tremolorate, .least = 0.1, .greatest = 15},
    {.name = "release", .member = &M::release, .least = 0.005, .greatest = 10},
    {.name = "attack", .member = &M::attack, .least = 0, .greatest = 5},
}};

constexpr std::array<Setting<O>, 15> OrganSettings{{
    {.name = "bar16", .member = &O::bar16, .least = 0, .greatest = 1},
    {.name = "bar5", .member = &O::bar5, .least = 0, .greatest = 1},
    {.name = "bar8", .member = &O::bar8, .least = 0, .greatest = 1},
    {.name = "bar4", .member = &O::bar4, .least = 0, .greatest = 1},
    {.name = "bar3", .member = &O::bar3, .least = 0, .greatest = 1},
    {.name = "bar2", .member = &O::bar2, .least = 0, .greatest = 1},
    {.name = "bar17", .member = &O::bar17, .least = 0, .greatest = 1},
    {.name = "bar13", .member = &O::bar13, .least = 0, .greatest = 1},
    {.name = "bar1", .member = &O::bar1, .least = 0, .greatest = 1},
    {.name = "click", .member = &O::click, .least = 0, .greatest = 2},
    {.name = "attack", .member = &O::attack, .least = 0, .greatest = 5},
    {.name = "release", .member = &O::release, .least = 0.005, .greatest = 5},
    {.name = "vibrato", .member = &O::vibrato, .least = 0, .greatest = 100},
    {.name = "vibratorate", .member = &O::vibratorate, .least = 0.1, .greatest = 15},
    {.name = "leak", .member = &O::leak, .least = 0, .greatest = 1},
}};

constexpr std::array<Setting<A>, 11> AirSettings{{
    {.name = "cutoff", .member = &A::cutoff, .least = 30, .greatest = 18000},
    {.name = "reso", .member = &A::reso, .least = 0, .greatest = 0.97},
    {.name = "track", .member = &A::track, .least = 0, .greatest = 1},
    {.name = "sweep", .member = &A::sweep, .least = -8, .greatest = 8},
    {.name = "flutter", .member = &A::flutter, .least = 0, .greatest = 3},
    {.name = "flutterrate", .member = &A::flutterrate, .least = 0.01, .greatest = 20},
    {.name = "attack", .member = &A::attack, .least = 0, .greatest = 16},
    {.name = "decay", .member = &A::decay, .least = 0.01, .greatest = 30},
    {.name = "sustain", .member = &A::sustain, .least = 0, .greatest = 1},
    {.name = "release", .member = &A::release, .least = 0.005, .greatest = 16},
    {.name = "wide", .member = &A::wide, .least = 0, .greatest = 1},
}};

} // namespace

SettingFault setPatch(Patch& patch, std::string_view name, double value) {
    struct Assign {
        std::string_view name;
        double value;
        SettingFault operator()(S& p) const { return assign<S>(p, SubtractiveSettings, name, value); }
        SettingFault operator()(F& p) const { return assign<F>(p, FmSettings, name, value); }
        SettingFault operator()(P& p) const { return assign<P>(p, PluckSettings, name, value); }
        SettingFault operator()(M& p) const { return assign<M>(p, ModalSettings, name, value); }
        SettingFault operator()(O& p) const { return assign<O>(p, OrganSettings, name, value); }
        SettingFault operator()(A& p) const { return assign<A>(p, AirSettings, name, value); }
    };
    return std::visit(Assign{name, value}, patch);
}

StereoBuffer renderNote(const Patch& patch, const Note& note, double rate) {
    struct Render {
        const Note& note;
        double rate;
        StereoBuffer operator()(const S& p) const { return renderSubtractive(p, note, rate); }
        StereoBuffer operator()(const F& p) const { return renderFm(p, note, rate); }
        StereoBuffer operator()(const P& p) const { return renderPluck(p, note, rate); }
        StereoBuffer operator()(const M& p) const { return renderModal(p, note, rate); }
        StereoBuffer operator()(const O& p) const { return renderOrgan(p, note, rate); }
        StereoBuffer operator()(const A& p) const { return renderAir(p, note, rate); }
    };
    return std::visit(Render{note, rate}, patch);
}

} // namespace tonewright::loops
