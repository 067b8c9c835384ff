// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Render.hpp"

#include "ExactMath.hpp"
#include "Filter.hpp"
#include "Loudness.hpp"
#include "Random.hpp"
#include "Sequencer.hpp"

#include <algorithm>
#include <bit>

namespace tonewright::loops {

namespace {

/// Returns the gains of both channels for a pan of -1 to 1, with equal power and a gain of 1 in the middle.
StereoFrame placed(double pan) {
    const double turns = (pan + 1.0) * 0.125;
    return {cosineOfTurns(turns) * 1.41421356237309504880, sineOfTurns(turns) * 1.41421356237309504880};
}

void playRow(StereoBuffer& loop, const Recipe& recipe, const Track& track, const DrumRow& row) {
    std::vector<TimedStroke> strokes = strokesOf(recipe, track, row);
    if (row.name == "openhat") { // a closed or pedalled hat chokes an open hat
        for (const DrumRow& other : track.rows) {
            if (other.name != "hat" && other.name != "pedal") continue;
            for (const TimedStroke& closing : strokesOf(recipe, track, other)) {
                for (TimedStroke& open : strokes) {
                    const std::size_t wait = (closing.frame + loop.frames() - open.frame) % loop.frames();
                    std::size_t& gate = open.stroke.gateFrames;
                    if (wait > 0 && (gate == 0 || wait < gate)) gate = wait;
                }
            }
        }
    }
    const StereoFrame gains = placed(row.drum.pan);
    const double level = gainOfDecibels(row.drum.level);
    for (const TimedStroke& timed : strokes) {
        const StereoBuffer sound = renderStroke(row.drum.patch, timed.stroke, recipe.rate);
        addAround(loop, sound, timed.frame, gains.left * level, gains.right * level);
    }
}

StereoBuffer playTrack(const Recipe& recipe, const Track& track) {
    StereoBuffer loop(recipe.frames());
    for (const DrumRow& row : track.rows) {
        playRow(loop, recipe, track, row);
    }
    for (const TimedNote& timed : notesOf(recipe, track)) {
        addAround(loop, renderNote(track.patch, timed.note, recipe.rate), timed.frame, 1.0, 1.0);
    }
    return loop;
}

void scale(StereoBuffer& loop, double left, double right) {
    for (std::size_t frame = 0; frame < loop.frames(); ++frame) {
        loop.left[frame] *= left;
        loop.right[frame] *= right;
    }
}

std::vector<Kick> kicksOf(const Recipe& recipe) {
    std::vector<Kick> kicks;
    for (const Track& track : recipe.tracks) {
        for (const DrumRow& row : track.rows) {
            if (row.name != "kick") continue;
            for (const TimedStroke& timed : strokesOf(recipe, track, row)) {
                kicks.push_back({timed.frame, timed.stroke.velocity});
            }
        }
    }
    return kicks;
}

/// Scales a track to the loudness that `level` asks for, so that the same level sounds equally loud with
/// every instrument.
void setLevel(StereoBuffer& loop, double level, double pan, double rate) {
    const double loudness = loudnessWhileSounding(loop, rate);
    if (loudness < -120.0) return; // a silent track remains silent
    const double gain = gainOfDecibels(-20.0 + level - loudness);
    const StereoFrame gains = placed(pan);
    scale(loop, gain * gains.left, gain * gains.right);
}

/// Masters the loop: removes rumble and inaudible high frequencies, compresses slightly, and scales to the
/// common loudness with no peak above the ceiling.
void master(StereoBuffer& loop, const Recipe& recipe) {
    const double rate = recipe.rate;
    std::array<StateVariableFilter, 2> rumble;
    const FilterTuning tuning(24.0, 0.0, rate);
    runAround(loop, static_cast<std::size_t>(0.5 * rate), [&](StereoFrame in, std::size_t) {
        return StereoFrame{rumble[0].step(in.left, tuning).high, rumble[1].step(in.right, tuning).high};
    });
    // Frequencies above 17 kHz cost the encoder bits and cause decoded peaks above the ceiling.
    std::array<StateVariableFilter, 4> hiss;
    const FilterTuning first(17000.0, 0.0, rate);
    const FilterTuning second(17000.0, 0.5, rate);
    runAround(loop, static_cast<std::size_t>(0.1 * rate), [&](StereoFrame in, std::size_t) {
        return StereoFrame{hiss[1].step(hiss[0].step(in.left, first).low, second).low,
                           hiss[3].step(hiss[2].step(in.right, first).low, second).low};
    });
    const auto adjust = [&] {
        const double gain = gainOfDecibels(TargetLoudness - loudnessOf(loop, rate));
        scale(loop, gain, gain);
    };
    adjust();
    compress(loop, -18.0, 1.0 + 2.0 * recipe.glue, rate);
    for (int round = 0; round < 4; ++round) { // limiting reduces the loudness; four rounds meet both targets
        adjust();
        limitPeaks(loop, PeakCeiling, rate);
    }
}

} // namespace

Pcm render(const Recipe& recipe) {
    const std::size_t frames = recipe.frames();
    const double rate = recipe.rate;
    StereoBuffer sum(frames);
    StereoBuffer sent(frames);
    bool anySent = false;
    EffectContext context{.rate = rate,
                          .sixteenths = static_cast<double>(recipe.ticks()) / (TicksPerQuarter / 4.0),
                          .seed = recipe.seed,
                          .kicks = kicksOf(recipe)};
    for (const Track& track : recipe.tracks) {
        StereoBuffer loop = playTrack(recipe, track);
        context.seed = seedFrom(track.name, recipe.seed + track.line);
        // The level is also set before the effects, because drive and crush depend on their input level.
        setLevel(loop, 8.0, 0.0, rate);
        for (const Effect& effect : track.effects) {
            applyEffect(loop, effect, context);
        }
        setLevel(loop, track.level, track.pan, rate);
        addAround(sum, loop, 0, 1.0, 1.0);
        if (track.send > -60.0) {
            const double gain = gainOfDecibels(track.send);
            addAround(sent, loop, 0, gain, gain);
            anySent = true;
        }
    }
    if (anySent) {
        applyRoom(sent, recipe.room, rate);
        addAround(sum, sent, 0, 1.0, 1.0);
    }
    if (recipe.channels == 1) {
        for (std::size_t frame = 0; frame < frames; ++frame) {
            sum.left[frame] = sum.right[frame] = 0.5 * (sum.left[frame] + sum.right[frame]);
        }
    }
    master(sum, recipe);

    Pcm pcm{.rate = recipe.rate, .channels = {}};
    const auto narrowed = [](const std::vector<double>& channel) {
        std::vector<float> samples;
        samples.reserve(channel.size());
        for (const double value : channel) {
            samples.push_back(static_cast<float>(value));
        }
        return samples;
    };
    pcm.channels.push_back(narrowed(sum.left));
    if (recipe.channels == 2) pcm.channels.push_back(narrowed(sum.right));
    return pcm;
}

std::uint64_t checksum(const Pcm& pcm) noexcept {
    std::uint64_t hash = 14695981039346656037ULL;
    for (const std::vector<float>& channel : pcm.channels) {
        for (const float sample : channel) {
            const auto bits = std::bit_cast<std::uint32_t>(sample);
            for (unsigned shift = 0; shift < 32; shift += 8) {
                hash = (hash ^ ((bits >> shift) & 0xFFU)) * 1099511628211ULL;
            }
        }
    }
    return hash;
}

} // namespace tonewright::loops
