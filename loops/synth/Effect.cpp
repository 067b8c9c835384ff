// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Effect.hpp"

#include <array>

namespace tonewright::loops {

namespace {

constexpr std::array<Setting<Drive>, 3> DriveSettings{{
    {.name = "amount", .member = &Drive::amount, .least = 0, .greatest = 3},
    {.name = "tone", .member = &Drive::tone, .least = 200, .greatest = 18000},
    {.name = "mix", .member = &Drive::mix, .least = 0, .greatest = 1},
}};
constexpr std::array<Setting<Sweep>, 7> SweepSettings{{
    {.name = "mode", .member = &Sweep::mode, .least = 0, .greatest = 2},
    {.name = "cutoff", .member = &Sweep::cutoff, .least = 20, .greatest = 18000},
    {.name = "to", .member = &Sweep::to, .least = 20, .greatest = 18000},
    {.name = "reso", .member = &Sweep::reso, .least = 0, .greatest = 0.95},
    {.name = "cycles", .member = &Sweep::cycles, .least = 1, .greatest = 256},
    {.name = "shape", .member = &Sweep::shape, .least = 0, .greatest = 3},
    {.name = "poles", .member = &Sweep::poles, .least = 2, .greatest = 4},
}};
constexpr std::array<Setting<Chorus>, 4> ChorusSettings{{
    {.name = "depth", .member = &Chorus::depth, .least = 0.1, .greatest = 12},
    {.name = "delay", .member = &Chorus::delay, .least = 1, .greatest = 40},
    {.name = "cycles", .member = &Chorus::cycles, .least = 1, .greatest = 256},
    {.name = "mix", .member = &Chorus::mix, .least = 0, .greatest = 1},
}};
constexpr std::array<Setting<Phaser>, 5> PhaserSettings{{
    {.name = "low", .member = &Phaser::low, .least = 60, .greatest = 8000},
    {.name = "high", .member = &Phaser::high, .least = 60, .greatest = 12000},
    {.name = "cycles", .member = &Phaser::cycles, .least = 1, .greatest = 256},
    {.name = "feedback", .member = &Phaser::feedback, .least = 0, .greatest = 0.9},
    {.name = "mix", .member = &Phaser::mix, .least = 0, .greatest = 1},
}};
constexpr std::array<Setting<Tremolo>, 3> TremoloSettings{{
    {.name = "cycles", .member = &Tremolo::cycles, .least = 1, .greatest = 512},
    {.name = "depth", .member = &Tremolo::depth, .least = 0, .greatest = 1},
    {.name = "pan", .member = &Tremolo::pan, .least = 0, .greatest = 1},
}};
constexpr std::array<Setting<Echo>, 5> EchoSettings{{
    {.name = "steps", .member = &Echo::steps, .least = 0.25, .greatest = 64},
    {.name = "feedback", .member = &Echo::feedback, .least = 0, .greatest = 0.9},
    {.name = "mix", .member = &Echo::mix, .least = 0, .greatest = 1},
    {.name = "tone", .member = &Echo::tone, .least = 200, .greatest = 18000},
    {.name = "cross", .member = &Echo::cross, .least = 0, .greatest = 1},
}};
constexpr std::array<Setting<Crush>, 3> CrushSettings{{
    {.name = "bits", .member = &Crush::bits, .least = 2, .greatest = 16},
    {.name = "hold", .member = &Crush::hold, .least = 1, .greatest = 64},
    {.name = "mix", .member = &Crush::mix, .least = 0, .greatest = 1},
}};
constexpr std::array<Setting<Duck>, 2> DuckSettings{{
    {.name = "depth", .member = &Duck::depth, .least = 0, .greatest = 1},
    {.name = "time", .member = &Duck::time, .least = 0.03, .greatest = 2},
}};
constexpr std::array<Setting<Grains>, 5> GrainsSettings{{
    {.name = "density", .member = &Grains::density, .least = 1, .greatest = 200},
    {.name = "size", .member = &Grains::size, .least = 0.01, .greatest = 1},
    {.name = "shift", .member = &Grains::shift, .least = -24, .greatest = 24},
    {.name = "share", .member = &Grains::share, .least = 0, .greatest = 1},
    {.name = "mix", .member = &Grains::mix, .least = 0, .greatest = 1},
}};
constexpr std::array<Setting<Chop>, 1> ChopSettings{{
    {.name = "depth", .member = &Chop::depth, .least = 0, .greatest = 1},
}};
constexpr std::array<Setting<Tone>, 3> ToneSettings{{
    {.name = "low", .member = &Tone::low, .least = -24, .greatest = 12},
    {.name = "high", .member = &Tone::high, .least = -24, .greatest = 12},
    {.name = "width", .member = &Tone::width, .least = 0, .greatest = 2},
}};

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
