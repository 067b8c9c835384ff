// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The sound of each kind of drum.

#include "Drum.hpp"
#include "ExactMath.hpp"
#include "Filter.hpp"
#include "Random.hpp"
#include "Wavetable.hpp"

#include <array>

namespace tonewright::loops {

namespace {

/// Collects a stroke's frames, and ends the stroke when it has faded or has been choked.
class StrokeWriter {
  public:
    StrokeWriter(const Stroke& stroke, double seconds, double rate)
        : _velocity(stroke.velocity)
        , _gate(stroke.gateFrames)
        , _most(static_cast<std::size_t>(seconds * rate))
        , _fall(decayFactor(0.03, rate)) {
        _sound.left.reserve(_most);
    }

    [[nodiscard]] bool goesOn() const noexcept { return _sound.left.size() < _most && _choke > 1e-4; }

    void write(double value) {
        if (_gate != 0 && _sound.left.size() >= _gate) _choke *= _fall;
        // The last thirty-second of the longest duration fades to silence, so that no stroke ends with a
        // click.
        const auto left = static_cast<double>(_most - _sound.left.size());
        const double fade = std::min(1.0, left * 32.0 / static_cast<double>(_most));
        _sound.left.push_back(value * _velocity * _choke * fade);
    }

    StereoBuffer finish() {
        _sound.right = _sound.left;
        return std::move(_sound);
    }

  private:
    StereoBuffer _sound;
    double _velocity;
    std::size_t _gate;
    std::size_t _most;
    double _fall;
    double _choke = 1.0;
};

double turned(double& phase, double step) {
    const double value = sineOfTurns(phase);
    phase += step;
    phase -= phase >= 1.0 ? 1.0 : 0.0;
    return value;
}

StereoBuffer render(const MembranePatch& patch, const Stroke& stroke, double rate) {
    Random random(stroke.seed);
    StrokeWriter writer(stroke, patch.decay * 1.15 + 0.02, rate);
    StateVariableFilter tone;
    const FilterTuning tuning(patch.tone * (0.6 + 0.5 * stroke.velocity), 0.2, rate);
    const double bodyFall = decayFactor(patch.decay, rate);
    const double overtoneFall = decayFactor(patch.decay * 0.45, rate);
    const double pitchFall = decayFactor(patch.falltime, rate);
    const double clickFall = decayFactor(0.012, rate);
    const double noiseFall = decayFactor(std::min(patch.decay * 0.5, 0.12), rate);
    double body = 1.0;
    double overtone = patch.overtone;
    double fall = patch.fall * (0.55 + 0.45 * stroke.velocity);
    double click = patch.click * stroke.velocity;
    double noise = patch.noise;
    double phase = 0.0;
    double phase2 = 0.0;
    const double push = 1.0 + 5.0 * patch.drive;
    double hertz = 0.0;
    for (std::size_t frame = 0; writer.goesOn(); ++frame) {
        if (frame % 4 == 0) hertz = patch.pitch * powerOfTwo(fall / 12.0);
        const double rise = std::min(1.0, static_cast<double>(frame) / 24.0); // 0.5 ms: prevents a click
        double value = body * turned(phase, hertz / rate) + overtone * turned(phase2, hertz * 1.59 / rate);
        value += 2.5 * tone.step((click + noise) * random.signedUnit(), tuning).band;
        value = saturate(value * push) / (0.6 + 0.4 * push);
        writer.write(value * rise * 0.9);
        body *= bodyFall;
        overtone *= overtoneFall;
        fall *= pitchFall;
        click *= clickFall;
        noise *= noiseFall;
    }
    return writer.finish();
}

StereoBuffer render(const SnarePatch& patch, const Stroke& stroke, double rate) {
    Random random(stroke.seed);
    StrokeWriter writer(stroke, std::max(patch.decay, patch.noisedecay) * 1.15 + 0.02, rate);
    StateVariableFilter lower;
    StateVariableFilter upper;
    const FilterTuning low(patch.low, 0.1, rate);
    const FilterTuning high(patch.high * (0.55 + 0.55 * stroke.velocity), 0.1, rate);
    const double bodyFall = decayFactor(patch.decay, rate);
    const double noiseFall = decayFactor(patch.noisedecay * (0.6 + 0.5 * stroke.velocity), rate);
    const double bendFall = decayFactor(0.03, rate);
    const double snapFall = decayFactor(0.02, rate);
    double body = patch.body;
    double noise = patch.noise * (0.5 + 0.5 * stroke.velocity);
    double bend = 7.0;
    double snap = patch.snap * stroke.velocity;
    double phase = 0.0;
    double phase2 = 0.0;
    const double push = 1.0 + 5.0 * patch.drive;
    for (std::size_t frame = 0; writer.goesOn(); ++frame) {
        const double hertz = patch.pitch * powerOfTwo(bend / 12.0);
        const double rise = std::min(1.0, static_cast<double>(frame) / 16.0);
        double value = body * (turned(phase, hertz / rate) + 0.6 * turned(phase2, hertz * 1.74 / rate));
        const double hiss = random.signedUnit();
        value += upper.step(lower.step((noise + snap) * hiss, low).high, high).low;
        value = saturate(value * push) / (0.6 + 0.4 * push);
        writer.write(value * rise);
        body *= bodyFall;
        noise *= noiseFall;
        bend *= bendFall;
        snap *= snapFall;
    }
    return writer.finish();
}

StereoBuffer render(const ClapPatch& patch, const Stroke& stroke, double rate) {
    Random random(stroke.seed);
    StrokeWriter writer(stroke, patch.decay * 1.2 + patch.bursts * patch.spacing, rate);
    StateVariableFilter band;
    StateVariableFilter second;
    const FilterTuning tuning(patch.tone, patch.reso, rate);
    const double burstFall = decayFactor(0.018, rate);
    const double tailFall = decayFactor(patch.decay, rate);
    const auto spacing = static_cast<std::size_t>(patch.spacing * rate);
    const auto bursts = static_cast<std::size_t>(patch.bursts);
    double level = 0.0;
    double fall = burstFall;
    for (std::size_t frame = 0; writer.goesOn(); ++frame) {
        if (spacing > 0 && frame % spacing == 0 && frame / spacing < bursts) {
            level = frame / spacing + 1 == bursts ? 1.0 : 0.7 + 0.2 * random.unit();
            fall = frame / spacing + 1 == bursts ? tailFall : burstFall;
        }
        const double noise = level * random.signedUnit();
        writer.write(1.3 * (band.step(noise, tuning).band + 0.4 * second.step(noise, tuning).high));
        level *= fall;
    }
    return writer.finish();
}

StereoBuffer render(const MetalPatch& patch, const Stroke& stroke, double rate) {
    constexpr std::array<double, 6> Ratios{1.0, 1.342, 1.2312, 1.6532, 1.9523, 2.1523};
    Random random(stroke.seed);
    StrokeWriter writer(stroke, patch.decay * 1.15 + 0.02, rate);
    std::array<const WaveCycle*, 6> cycles{};
    std::array<double, 6> phases{};
    for (std::size_t index = 0; index < 6; ++index) {
        cycles[index] = &waveCycle(WaveShape::Square, patch.pitch * Ratios[index], rate);
        phases[index] = random.unit();
    }
    StateVariableFilter first;
    StateVariableFilter second;
    const FilterTuning tuning(patch.highpass, 0.15, rate);
    const double fall = decayFactor(patch.decay * (0.7 + 0.4 * stroke.velocity), rate);
    const double strikeFall = decayFactor(0.02, rate);
    const double rise = 1.0 / std::max(1.0, patch.attack * rate);
    double level = 1.0;
    double strike = 0.6 * stroke.velocity;
    double phase = 0.0;
    double phase2 = 0.0;
    for (std::size_t frame = 0; writer.goesOn(); ++frame) {
        double value = 0.0;
        for (std::size_t index = 0; index < 6; ++index) {
            value += cycles[index]->at(phases[index]);
            phases[index] += patch.pitch * Ratios[index] / rate;
            phases[index] -= phases[index] >= 1.0 ? 1.0 : 0.0;
        }
        value = 0.3 * value + patch.noise * random.signedUnit();
        value = second.step(first.step(value, tuning).high, tuning).high;
        if (patch.ring > 0.0) {
            value += patch.ring * (turned(phase, patch.pitch * patch.ringtone / rate) +
                                   0.7 * turned(phase2, patch.pitch * patch.ringtone * 1.483 / rate));
        }
        const double opened = std::min(1.0, static_cast<double>(frame) * rise);
        writer.write(value * (level + strike) * opened * 0.7);
        level *= fall;
        strike *= strikeFall;
    }
    return writer.finish();
}

StereoBuffer render(const ShakerPatch& patch, const Stroke& stroke, double rate) {
    constexpr std::array<double, 4> Plates{0.91, 1.13, 1.37, 1.71};
    Random random(stroke.seed);
    StrokeWriter writer(stroke, patch.attack + patch.decay * 1.2 + 0.01, rate);
    StateVariableFilter band;
    StateVariableFilter high;
    const FilterTuning tuning(patch.tone, patch.reso, rate);
    const FilterTuning highTuning(patch.highpass, 0.0, rate);
    const double fall = decayFactor(patch.decay, rate);
    const auto attack = std::max<std::size_t>(8, static_cast<std::size_t>(patch.attack * rate));
    std::array<double, 4> phases{};
    double level = 1.0;
    for (std::size_t frame = 0; writer.goesOn(); ++frame) {
        const double opened = std::min(1.0, static_cast<double>(frame) / static_cast<double>(attack));
        double value = high.step(band.step(random.signedUnit(), tuning).low, highTuning).high;
        if (patch.jingle > 0.0) {
            for (std::size_t plate = 0; plate < 4; ++plate) {
                value += patch.jingle * 0.25 *
                         turned(phases[plate], std::min(0.45, patch.tone * Plates[plate] / rate)) *
                         (0.6 + 0.4 * random.signedUnit());
            }
        }
        writer.write(value * level * opened * opened * 1.1);
        if (frame >= attack) level *= fall;
    }
    return writer.finish();
}

StereoBuffer render(const WoodPatch& patch, const Stroke& stroke, double rate) {
    Random random(stroke.seed);
    StrokeWriter writer(stroke, patch.decay * 1.2 + 0.02, rate);
    StateVariableFilter tone;
    const FilterTuning tuning(std::min(patch.pitch * 3.0, 12000.0), 0.2, rate);
    const double fall = decayFactor(patch.decay, rate);
    const double fall2 = decayFactor(patch.decay * 0.6, rate);
    const double clickFall = decayFactor(0.006, rate);
    double level = 0.8;
    double level2 = 0.5 * (0.5 + 0.5 * stroke.velocity);
    double click = patch.click * stroke.velocity;
    double phase = 0.0;
    double phase2 = 0.0;
    for (std::size_t frame = 0; writer.goesOn(); ++frame) {
        const double rise = std::min(1.0, static_cast<double>(frame) / 10.0);
        double value = level * turned(phase, patch.pitch / rate);
        value += level2 * turned(phase2, std::min(0.45, patch.pitch * patch.ratio / rate));
        value += 1.5 * tone.step(click * random.signedUnit(), tuning).band;
        writer.write(value * rise * 0.8);
        level *= fall;
        level2 *= fall2;
        click *= clickFall;
    }
    return writer.finish();
}

} // namespace

StereoBuffer renderStroke(const DrumPatch& patch, const Stroke& stroke, double rate) {
    return std::visit([&](const auto& kind) { return render(kind, stroke, rate); }, patch);
}

} // namespace tonewright::loops
