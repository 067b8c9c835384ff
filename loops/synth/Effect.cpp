// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Effect.hpp"

#include <array>

namespace tonewright::loops {

namespace {

constexpr std::array<Setting<Drive>, 3> DriveSettings{
    {{"amount", &Drive::amount, 0, 3}, {"tone", &Drive::tone, 200, 18000}, {"mix", &Drive::mix, 0, 1}}};
constexpr std::array<Setting<Sweep>, 7> SweepSettings{{{"mode", &Sweep::mode, 0, 2},
                                                       {"cutoff", &Sweep::cutoff, 20, 18000},
                                                       {"to", &Sweep::to, 20, 18000},
                                                       {"reso", &Sweep::reso, 0, 0.95},
                                                       {"cycles", &Sweep::cycles, 1, 256},
                                                       {"shape", &Sweep::shape, 0, 3},
                                                       {"poles", &Sweep::poles, 2, 4}}};
constexpr std::array<Setting<Chorus>, 4> ChorusSettings{{{"depth", &Chorus::depth, 0.1, 12},
                                                         {"delay", &Chorus::delay, 1, 40},
                                                         {"cycles", &Chorus::cycles, 1, 256},
                                                         {"mix", &Chorus::mix, 0, 1}}};
constexpr std::array<Setting<Phaser>, 5> PhaserSettings{{{"low", &Phaser::low, 60, 8000},
                                                         {"high", &Phaser::high, 60, 12000},
                                                         {"cycles", &Phaser::cycles, 1, 256},
                                                         {"feedback", &Phaser::feedback, 0, 0.9},
                                                         {"mix", &Phaser::mix, 0, 1}}};
constexpr std::array<Setting<Tremolo>, 3> TremoloSettings{
    {{"cycles", &Tremolo::cycles, 1, 512}, {"depth", &Tremolo::depth, 0, 1}, {"pan", &Tremolo::pan, 0, 1}}};
constexpr std::array<Setting<Echo>, 5> EchoSettings{{{"steps", &Echo::steps, 0.25, 64},
                                                     {"feedback", &Echo::feedback, 0, 0.9},
                                                     {"mix", &Echo::mix, 0, 1},
                                                     {"tone", &Echo::tone, 200, 18000},
                                                     {"cross", &Echo::cross, 0, 1}}};
constexpr std::array<Setting<Crush>, 3> CrushSettings{
    {{"bits", &Crush::bits, 2, 16}, {"hold", &Crush::hold, 1, 64}, {"mix", &Crush::mix, 0, 1}}};
constexpr std::array<Setting<Duck>, 2> DuckSettings{
    {{"depth", &Duck::depth, 0, 1}, {"time", &Duck::time, 0.03, 2}}};
constexpr std::array<Setting<Grains>, 5> GrainsSettings{{{"density", &Grains::density, 1, 200},
                                                         {"size", &Grains::size, 0.01, 1},
                                                         {"shift", &Grains::shift, -24, 24},
                                                         {"share", &Grains::share, 0, 1},
                                                         {"mix", &Grains::mix, 0, 1}}};
constexpr std::array<Setting<Chop>, 1> ChopSettings{{{"depth", &Chop::depth, 0, 1}}};
constexpr std::array<Setting<Tone>, 3> ToneSettings{
    {{"low", &Tone::low, -24, 12}, {"high", &Tone::high, -24, 12}, {"width", &Tone::width, 0, 2}}};

struct Named {
    std::string_view name;
    Effect effect;
};

const auto& effects() {
    static const std::array table = std::to_array<Named>({
        {"drive", Drive{}},
        {"lowpass", Sweep{}},
        {"bandpass", Sweep{.mode = 1}},
        {"highpass", Sweep{.mode = 2}},
        {"chorus", Chorus{}},
        {"phaser", Phaser{}},
        {"tremolo", Tremolo{}},
        {"echo", Echo{}},
        {"crush", Crush{}},
        {"duck", Duck{}},
        {"grains", Grains{}},
        {"chop", Chop{}},
        {"tone", Tone{}},
    });
    return table;
}

} // namespace

std::optional<Effect> effectNamed(std::string_view name) {
    for (const Named& one : effects()) {
        if (one.name == name) return one.effect;
    }
    return std::nullopt;
}

std::string effectNames() {
    std::string names;
    for (const Named& one : effects()) {
        names += (names.empty() ? "" : ", ") + std::string(one.name);
    }
    return names;
}

SettingFault setEffect(Effect& effect, std::string_view name, double value) {
    struct Assign {
        std::string_view name;
        double value;
        SettingFault operator()(Drive& e) const { return assign<Drive>(e, DriveSettings, name, value); }
        SettingFault operator()(Sweep& e) const { return assign<Sweep>(e, SweepSettings, name, value); }
        SettingFault operator()(Chorus& e) const { return assign<Chorus>(e, ChorusSettings, name, value); }
        SettingFault operator()(Phaser& e) const { return assign<Phaser>(e, PhaserSettings, name, value); }
        SettingFault operator()(Tremolo& e) const { return assign<Tremolo>(e, TremoloSettings, name, value); }
        SettingFault operator()(Echo& e) const { return assign<Echo>(e, EchoSettings, name, value); }
        SettingFault operator()(Crush& e) const { return assign<Crush>(e, CrushSettings, name, value); }
        SettingFault operator()(Duck& e) const { return assign<Duck>(e, DuckSettings, name, value); }
        SettingFault operator()(Grains& e) const { return assign<Grains>(e, GrainsSettings, name, value); }
        SettingFault operator()(Chop& e) const { return assign<Chop>(e, ChopSettings, name, value); }
        SettingFault operator()(Tone& e) const { return assign<Tone>(e, ToneSettings, name, value); }
    };
    return std::visit(Assign{name, value}, effect);
}

} // namespace tonewright::loops
