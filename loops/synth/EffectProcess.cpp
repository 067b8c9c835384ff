// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The signal processing of each effect.

#include "Effect.hpp"
#include "ExactMath.hpp"
#include "Filter.hpp"
#include "PitchPath.hpp"
#include "Random.hpp"

#include <array>
#include <cmath>

namespace tonewright::loops {

namespace {

double wholeCycles(double cycles) {
    return std::max(1.0, std::floor(cycles + 0.5)); // a fraction of a cycle would click at the seam
}

double placeIn(const StereoBuffer& loop, std::size_t frame) {
    return static_cast<double>(frame) / static_cast<double>(loop.frames());
}

/// Interpolates between frames and wraps around the loop; `position` may lie up to one loop before its
/// beginning.
double readAround(const std::vector<double>& channel, double position) {
    const double length = static_cast<double>(channel.size());
    position -= std::floor(position / length) * length;
    const auto index = std::min(static_cast<std::size_t>(position), channel.size() - 1);
    const double part = position - static_cast<double>(index);
    const double next = channel[index + 1 == channel.size() ? 0 : index + 1];
    return channel[index] + (next - channel[index]) * part;
}

void apply(StereoBuffer& loop, const Drive& drive, const EffectContext& context) {
    const double push = 1.0 + 9.0 * drive.amount;
    const double makeUp = 1.0 / (1.0 + 3.5 * drive.amount);
    const FilterTuning tuning(drive.tone, 0.0, context.rate);
    std::array<StateVariableFilter, 2> filters;
    const auto bent = [&](double value, StateVariableFilter& filter) {
        const double wet =
            filter.step(saturate((value + 0.03) * push) - saturate(0.03 * push), tuning).low * makeUp;
        return value + drive.mix * (wet - value);
    };
    runAround(loop, 4096, [&](StereoFrame in, std::size_t) {
        return StereoFrame{bent(in.left, filters[0]), bent(in.right, filters[1])};
    });
}

double travel(double shape, double phase) {
    switch (static_cast<int>(shape)) {
    case 1:
        // The jump of the saw takes a fiftieth of its cycle, so that it does not click.
        return phase < 0.98 ? phase / 0.98 : (1.0 - phase) / 0.02;
    case 2:
        return phase < 0.02 ? phase / 0.02 : (1.0 - phase) / 0.98;
    case 3:
        return phase < 0.5 ? 2.0 * phase : 2.0 - 2.0 * phase;
    default:
        return 0.5 - 0.5 * cosineOfTurns(phase);
    }
}

double chosen(const FilterOutputs& outputs, int mode) {
    return mode == 0 ? outputs.low : mode == 1 ? outputs.band : outputs.high;
}

void apply(StereoBuffer& loop, const Sweep& sweep, const EffectContext& context) {
    const double cycles = wholeCycles(sweep.cycles);
    const double octaves = sweep.to > 0.0 ? logarithmOfTwo(sweep.to / sweep.cutoff) : 0.0;
    const int mode = static_cast<int>(sweep.mode);
    std::array<StateVariableFilter, 4> filters;
    FilterTuning tuning(sweep.cutoff, sweep.reso, context.rate);
    const bool steep = sweep.poles > 2.0;
    const bool still = octaves == 0.0;
    runAround(loop, static_cast<std::size_t>(0.5 * context.rate), [&](StereoFrame in, std::size_t frame) {
        if (!still && frame % ControlFrames == 0) {
            const double phase = placeIn(loop, frame) * cycles;
            const double way = travel(sweep.shape, phase - std::floor(phase));
            tuning = FilterTuning(sweep.cutoff * powerOfTwo(octaves * way), sweep.reso, context.rate);
        }
        StereoFrame out{chosen(filters[0].step(in.left, tuning), mode),
                        chosen(filters[1].step(in.right, tuning), mode)};
        if (steep) {
            out.left = chosen(filters[2].step(out.left, tuning), mode);
            out.right = chosen(filters[3].step(out.right, tuning), mode);
        }
        return out;
    });
}

void apply(StereoBuffer& loop, const Chorus& chorus, const EffectContext& context) {
    const StereoBuffer dry = loop;
    const double cycles = wholeCycles(chorus.cycles);
    const double perMillisecond = context.rate * 0.001;
    for (std::size_t frame = 0; frame < loop.frames(); ++frame) {
        const double phase = placeIn(loop, frame) * cycles;
        const double at = static_cast<double>(frame);
        const auto tap = [&](const std::vector<double>& channel, double offset) {
            const double delay = chorus.delay + chorus.depth * (1.0 + sineOfTurns(phase + offset));
            return readAround(channel, at - delay * perMillisecond);
        };
        const double keep = 1.0 - 0.5 * chorus.mix;
        loop.left[frame] =
            keep * dry.left[frame] + 0.6 * chorus.mix * (tap(dry.left, 0.0) + 0.6 * tap(dry.right, 0.37));
        loop.right[frame] =
            keep * dry.right[frame] + 0.6 * chorus.mix * (tap(dry.right, 0.25) + 0.6 * tap(dry.left, 0.63));
    }
}

void apply(StereoBuffer& loop, const Phaser& phaser, const EffectContext& context) {
    constexpr std::size_t Stages = 6;
    struct Side {
        std::array<double, Stages> memory{};
        double fed = 0.0;
        double step(double input, double g, double feedback) {
            double value = input + feedback * fed;
            for (double& held : memory) { // one-pole all-pass stages
                const double out = held - g * value;
                held = value + g * out;
                value = out;
            }
            fed = std::fabs(value) < 1e-20 ? 0.0 : value;
            return value;
        }
    };
    std::array<Side, 2> sides;
    const double cycles = wholeCycles(phaser.cycles);
    const double octaves = logarithmOfTwo(phaser.high / phaser.low);
    std::array<double, 2> tuning{};
    runAround(loop, static_cast<std::size_t>(0.6 * context.rate), [&](StereoFrame in, std::size_t frame) {
        for (std::size_t side = 0; side < 2; ++side) {
            const double way =
                0.5 - 0.5 * cosineOfTurns(placeIn(loop, frame) * cycles + 0.2 * static_cast<double>(side));
            if (frame % ControlFrames == 0) {
                const double turns = phaser.low * powerOfTwo(octaves * way) / context.rate * 0.5;
                const double tangent = sineOfTurns(turns) / cosineOfTurns(turns);
                tuning[side] = (1.0 - tangent) / (1.0 + tangent);
            }
        }
        const double keep = 1.0 - 0.5 * phaser.mix;
        return StereoFrame{
            keep * in.left + phaser.mix * 0.6 * sides[0].step(in.left, tuning[0], phaser.feedback),
            keep * in.right + phaser.mix * 0.6 * sides[1].step(in.right, tuning[1], phaser.feedback)};
    });
}

void apply(StereoBuffer& loop, const Tremolo& tremolo, const EffectContext&) {
    const double cycles = wholeCycles(tremolo.cycles);
    for (std::size_t frame = 0; frame < loop.frames(); ++frame) {
        const double wave = sineOfTurns(placeIn(loop, frame) * cycles);
        const double other = wave * (1.0 - 2.0 * tremolo.pan);
        loop.left[frame] *= 1.0 - tremolo.depth * (0.5 + 0.5 * wave);
        loop.right[frame] *= 1.0 - tremolo.depth * (0.5 + 0.5 * other);
    }
}

void apply(StereoBuffer& loop, const Echo& echo, const EffectContext& context) {
    const double wanted = echo.steps * static_cast<double>(loop.frames()) / context.sixteenths;
    const auto frames = static_cast<std::size_t>(std::max(1LL, std::llround(wanted)));
    std::vector<StereoFrame> line(frames);
    std::array<Smoother, 2> tone{Smoother(echo.tone, context.rate), Smoother(echo.tone, context.rate)};
    std::size_t at = 0;
    // Discards the output until repeats from before the start have fallen by 100 dB.
    double rounds = 2.0;
    for (double level = 1.0; level > 1e-5 && rounds < 120.0; level *= echo.feedback) rounds += 1.0;
    runAround(loop, static_cast<std::size_t>(rounds) * frames, [&](StereoFrame in, std::size_t) {
        const StereoFrame wet = line[at];
        const StereoFrame turned{wet.right * echo.cross + wet.left * (1.0 - echo.cross),
                                 wet.left * echo.cross + wet.right * (1.0 - echo.cross)};
        // With crossing repeats, the first repeat goes to the left and the next ones alternate.
        const double middle = 0.5 * (in.left + in.right);
        const StereoFrame sent{in.left + echo.cross * (middle - in.left), in.right * (1.0 - echo.cross)};
        line[at] = {tone[0].step(sent.left + turned.left * echo.feedback),
                    tone[1].step(sent.right + turned.right * echo.feedback)};
        at = at + 1 == frames ? 0 : at + 1;
        return StereoFrame{in.left + echo.mix * wet.left, in.right + echo.mix * wet.right};
    });
}

void apply(StereoBuffer& loop, const Crush& crush, const EffectContext&) {
    const StereoBuffer dry = loop;
    const double steps = powerOfTwo(crush.bits - 1.0);
    const auto hold = static_cast<std::size_t>(crush.hold);
    for (std::size_t frame = 0; frame < loop.frames(); ++frame) {
        const std::size_t source = frame - frame % hold;
        const auto coarse = [&](double value) { return std::floor(value * steps + 0.5) / steps; };
        loop.left[frame] += crush.mix * (coarse(dry.left[source]) - loop.left[frame]);
        loop.right[frame] += crush.mix * (coarse(dry.right[source]) - loop.right[frame]);
    }
}

void apply(StereoBuffer& loop, const Duck& duck, const EffectContext& context) {
    std::vector<double> dip(loop.frames());
    const auto lead = static_cast<std::size_t>(0.004 * context.rate); // starts just before the stroke
    const auto length = static_cast<std::size_t>(duck.time * context.rate);
    for (const Kick& kick : context.kicks) {
        const std::size_t start = (kick.frame + loop.frames() - lead % loop.frames()) % loop.frames();
        for (std::size_t frame = 0; frame < lead + length; ++frame) {
            const double way = frame < lead
                                   ? static_cast<double>(frame) / static_cast<double>(lead)
                                   : 1.0 - static_cast<double>(frame - lead) / static_cast<double>(length);
            double& here = dip[(start + frame) % loop.frames()];
            here = std::max(here, kick.velocity * way * way);
        }
    }
    for (std::size_t frame = 0; frame < loop.frames(); ++frame) {
        const double gain = 1.0 - duck.depth * dip[frame];
        loop.left[frame] *= gain;
        loop.right[frame] *= gain;
    }
}

void apply(StereoBuffer& loop, const Grains& grains, const EffectContext& context) {
    Random random(seedFrom("grains", context.seed));
    StereoBuffer cloud(loop.frames());
    const double seconds = static_cast<double>(loop.frames()) / context.rate;
    const auto count = static_cast<std::size_t>(grains.density * seconds);
    for (std::size_t grain = 0; grain < count; ++grain) {
        const auto frames = static_cast<std::size_t>(grains.size * (0.5 + random.unit()) * context.rate) + 8;
        const double length = static_cast<double>(loop.frames());
        const double source = random.unit() * length;
        const auto target = static_cast<std::size_t>(random.unit() * length);
        const double speed = random.unit() < grains.share ? powerOfTwo(grains.shift / 12.0) : 1.0;
        const double pan = random.signedUnit() * 0.9;
        for (std::size_t frame = 0; frame < frames; ++frame) {
            const double at = static_cast<double>(frame);
            const double window = 0.5 - 0.5 * cosineOfTurns(at / static_cast<double>(frames));
            const std::size_t place = (target + frame) % loop.frames();
            cloud.left[place] += window * (1.0 - pan) * readAround(loop.left, source + at * speed);
            cloud.right[place] += window * (1.0 + pan) * readAround(loop.right, source + at * speed);
        }
    }
    const double gain = grains.mix / std::sqrt(std::max(1.0, grains.density * grains.size * 0.4));
    for (std::size_t frame = 0; frame < loop.frames(); ++frame) {
        loop.left[frame] = loop.left[frame] * (1.0 - grains.mix) + gain * cloud.left[frame];
        loop.right[frame] = loop.right[frame] * (1.0 - grains.mix) + gain * cloud.right[frame];
    }
}

void apply(StereoBuffer& loop, const Chop& chop, const EffectContext& context) {
    if (chop.open.empty()) return;
    const double ease = 1.0 / (0.005 * context.rate); // the gain opens or closes within five milliseconds
    double gain = 1.0;
    runAround(loop, 8192, [&](StereoFrame in, std::size_t frame) {
        const auto step = static_cast<std::size_t>(placeIn(loop, frame) * context.sixteenths);
        const double target = chop.open[step % chop.open.size()] ? 1.0 : 1.0 - chop.depth;
        gain += std::clamp(target - gain, -ease, ease);
        return StereoFrame{in.left * gain, in.right * gain};
    });
}

void apply(StereoBuffer& loop, const Tone& tone, const EffectContext& context) {
    std::array<Smoother, 4> bands{Smoother(220.0, context.rate), Smoother(220.0, context.rate),
                                  Smoother(3200.0, context.rate), Smoother(3200.0, context.rate)};
    const double low = gainOfDecibels(tone.low) - 1.0;
    const double high = gainOfDecibels(tone.high) - 1.0;
    runAround(loop, 16384, [&](StereoFrame in, std::size_t) {
        const double left =
            in.left + low * bands[0].step(in.left) + high * (in.left - bands[2].step(in.left));
        const double right =
            in.right + low * bands[1].step(in.right) + high * (in.right - bands[3].step(in.right));
        const double middle = 0.5 * (left + right);
        const double side = 0.5 * (left - right) * tone.width;
        return StereoFrame{middle + side, middle - side};
    });
}

} // namespace

void applyEffect(StereoBuffer& loop, const Effect& effect, const EffectContext& context) {
    std::visit([&](const auto& kind) { apply(loop, kind, context); }, effect);
}

} // namespace tonewright::loops
