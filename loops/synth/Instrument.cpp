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

constexpr std::array<Setting<S>, 29> SubtractiveSettings{{{"shape", &S::shape, 0, 3},
                                                          {"shape2", &S::shape2, 0, 3},
                                                          {"mix2", &S::mix2, 0, 2},
                                                          {"tune2", &S::tune2, -36, 36},
                                                          {"width", &S::width, 0.05, 0.95},
                                                          {"unison", &S::unison, 1, 7},
                                                          {"detune", &S::detune, 0, 100},
                                                          {"spread", &S::spread, 0, 1},
                                                          {"sub", &S::sub, 0, 2},
                                                          {"noise", &S::noise, 0, 2},
                                                          {"cutoff", &S::cutoff, 20, 20000},
                                                          {"reso", &S::reso, 0, 0.97},
                                                          {"poles", &S::poles, 2, 4},
                                                          {"sweep", &S::sweep, -6, 8},
                                                          {"sweepdecay", &S::sweepdecay, 0.01, 20},
                                                          {"sweepattack", &S::sweepattack, 0, 10},
                                                          {"track", &S::track, 0, 1},
                                                          {"touch", &S::touch, 0, 6},
                                                          {"highpass", &S::highpass, 0, 5000},
                                                          {"attack", &S::attack, 0, 10},
                                                          {"decay", &S::decay, 0.01, 30},
                                                          {"sustain", &S::sustain, 0, 1},
                                                          {"release", &S::release, 0.005, 10},
                                                          {"vibrato", &S::vibrato, 0, 200},
                                                          {"vibratorate", &S::vibratorate, 0.1, 20},
                                                          {"vibratodelay", &S::vibratodelay, 0, 5},
                                                          {"drive", &S::drive, 0, 3},
                                                          {"glide", &S::glide, 0, 2},
                                                          {"vowel", &S::vowel, -1, 4}}};

constexpr std::array<Setting<F>, 18> FmSettings{{{"ratio", &F::ratio, 0, 20},
                                                 {"index", &F::index, 0, 12},
                                                 {"indexdecay", &F::indexdecay, 0.01, 20},
                                                 {"indexfloor", &F::indexfloor, 0, 1},
                                                 {"ratio2", &F::ratio2, 0, 20},
                                                 {"index2", &F::index2, 0, 8},
                                                 {"index2decay", &F::index2decay, 0.005, 10},
                                                 {"feedback", &F::feedback, 0, 1},
                                                 {"carrier", &F::carrier, 0.25, 16},
                                                 {"touch", &F::touch, 0, 1},
                                                 {"detune", &F::detune, 0, 60},
                                                 {"attack", &F::attack, 0, 10},
                                                 {"decay", &F::decay, 0.01, 30},
                                                 {"sustain", &F::sustain, 0, 1},
                                                 {"release", &F::release, 0.005, 10},
                                                 {"vibrato", &F::vibrato, 0, 200},
                                                 {"vibratorate", &F::vibratorate, 0.1, 20},
                                                 {"glide", &F::glide, 0, 2}}};

constexpr std::array<Setting<P>, 9> PluckSettings{{{"decay", &P::decay, 0.05, 20},
                                                   {"bright", &P::bright, 0, 1},
                                                   {"pick", &P::pick, 200, 18000},
                                                   {"position", &P::position, 0.02, 0.5},
                                                   {"body", &P::body, 0, 2},
                                                   {"bodytone", &P::bodytone, 60, 2000},
                                                   {"release", &P::release, 0.005, 10},
                                                   {"drive", &P::drive, 0, 3},
                                                   {"glide", &P::glide, 0, 2}}};

constexpr std::array<Setting<M>, 9> ModalSettings{{{"material", &M::material, 0, 5},
                                                   {"decay", &M::decay, 0.02, 20},
                                                   {"damping", &M::damping, 0, 3},
                                                   {"hardness", &M::hardness, 0, 1},
                                                   {"click", &M::click, 0, 2},
                                                   {"tremolo", &M::tremolo, 0, 1},
                                                   {"tremolorate", &M::tremolorate, 0.1, 15},
                                                   {"release", &M::release, 0.005, 10},
                                                   {"attack", &M::attack, 0, 5}}};

constexpr std::array<Setting<O>, 15> OrganSettings{{{"bar16", &O::bar16, 0, 1},
                                                    {"bar5", &O::bar5, 0, 1},
                                                    {"bar8", &O::bar8, 0, 1},
                                                    {"bar4", &O::bar4, 0, 1},
                                                    {"bar3", &O::bar3, 0, 1},
                                                    {"bar2", &O::bar2, 0, 1},
                                                    {"bar17", &O::bar17, 0, 1},
                                                    {"bar13", &O::bar13, 0, 1},
                                                    {"bar1", &O::bar1, 0, 1},
                                                    {"click", &O::click, 0, 2},
                                                    {"attack", &O::attack, 0, 5},
                                                    {"release", &O::release, 0.005, 5},
                                                    {"vibrato", &O::vibrato, 0, 100},
                                                    {"vibratorate", &O::vibratorate, 0.1, 15},
                                                    {"leak", &O::leak, 0, 1}}};

constexpr std::array<Setting<A>, 11> AirSettings{{{"cutoff", &A::cutoff, 30, 18000},
                                                  {"reso", &A::reso, 0, 0.97},
                                                  {"track", &A::track, 0, 1},
                                                  {"sweep", &A::sweep, -8, 8},
                                                  {"flutter", &A::flutter, 0, 3},
                                                  {"flutterrate", &A::flutterrate, 0.01, 20},
                                                  {"attack", &A::attack, 0, 16},
                                                  {"decay", &A::decay, 0.01, 30},
                                                  {"sustain", &A::sustain, 0, 1},
                                                  {"release", &A::release, 0.005, 16},
                                                  {"wide", &A::wide, 0, 1}}};

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
