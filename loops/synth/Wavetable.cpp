// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Wavetable.hpp"

#include "ExactMath.hpp"

#include <array>
#include <utility>

namespace tonewright::loops {

namespace {

constexpr std::size_t LevelCount = 31;
using Levels = std::vector<WaveCycle>;

/// Returns the highest harmonic of each level: 1024, 812, 645, 512, ... 1.
std::array<std::size_t, LevelCount> harmonicLimits() {
    std::array<std::size_t, LevelCount> limits{};
    for (std::size_t level = 0; level < LevelCount; ++level) {
        limits[level] = static_cast<std::size_t>(powerOfTwo(10.0 - static_cast<double>(level) / 3.0) + 0.01);
    }
    return limits;
}

double amplitude(WaveShape shape, std::size_t harmonic) {
    const double order = static_cast<double>(harmonic);
    const bool odd = harmonic % 2 == 1;
    switch (shape) {
    case WaveShape::Sine:
        return harmonic == 1 ? 1.0 : 0.0;
    case WaveShape::Triangle:
        return odd ? (harmonic % 4 == 1 ? 1.0 : -1.0) * 8.0 / (Pi * Pi * order * order) : 0.0;
    case WaveShape::Saw:
        return 2.0 / (Pi * order);
    case WaveShape::Square:
        return odd ? 4.0 / (Pi * order) : 0.0;
    }
    return 0.0;
}

Levels build(WaveShape shape) {
    std::vector<double> sine(WaveCycle::Size);
    for (std::size_t index = 0; index < sine.size(); ++index) {
        sine[index] = sineOfTurns(static_cast<double>(index) / static_cast<double>(WaveCycle::Size));
    }
    const auto limits = harmonicLimits();
    std::vector<double> cycle(WaveCycle::Size);
    std::vector<Levels::value_type> levels;
    levels.reserve(LevelCount);
    std::size_t harmonic = 1;
    for (std::size_t level = LevelCount;
         level-- > 0;) { // from few harmonics to many; each level adds to the previous one
        for (; harmonic <= limits[level]; ++harmonic) {
            const double gain = amplitude(shape, harmonic);
            if (gain == 0.0) {
                continue;
            }
            for (std::size_t index = 0; index < cycle.size(); ++index) {
                cycle[index] += gain * sine[index * harmonic % WaveCycle::Size];
            }
        }
        levels.emplace_back(cycle);
    }
    return levels; // levels[0] has one harmonic
}

} // namespace

WaveCycle::WaveCycle(std::vector<double> table)
    : _table(std::move(table)) {
    const double last = _table.back();
    const double first = _table[0];
    const double second = _table[1];
    const double third = _table[2];
    _table.insert(_table.begin(), last);
    _table.insert(_table.end(), {first, second, third});
}

const WaveCycle& waveCycle(WaveShape shape, double frequency, double rate) {
    static const std::array<Levels, 4> tables{build(WaveShape::Sine), build(WaveShape::Triangle),
                                              build(WaveShape::Saw), build(WaveShape::Square)};
    static const auto limits = harmonicLimits();
    const Levels& levels = tables[static_cast<std::size_t>(shape)];
    const double allowed = frequency > 1.0 ? 0.45 * rate / frequency : 1024.0;
    std::size_t level = 0;
    while (level + 1 < LevelCount && static_cast<double>(limits[LevelCount - 2 - level]) <= allowed) {
        ++level;
    }
    return levels[level];
}

} // namespace tonewright::loops
