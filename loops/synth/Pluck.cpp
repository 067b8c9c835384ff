// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Plucked strings: a burst of noise circulates in a delay line of one period and loses some energy in each
// round.

#include "Envelope.hpp"
#include "Filter.hpp"
#include "PitchPath.hpp"
#include "Random.hpp"

#include <vector>

namespace tonewright::loops {

StereoBuffer renderPluck(const PluckPatch& patch, const Note& note, double rate) {
    Random random(note.seed);
    PitchPath pitch(note, patch.glide, {}, rate);
    std::vector<double> line(static_cast<std::size_t>(rate / 20.0) + 8); // long enough for any note

    // The pick: noise with less treble for soft notes and a notch that depends on where the pick touches the
    // string.
    const double frequency = frequencyOfNote(note.note);
    const auto period = static_cast<std::size_t>(rate / frequency);
    Smoother hardness(patch.pick * (0.4 + 0.6 * note.velocity), rate);
    std::vector<double> burst(period);
    for (double& value : burst) {
        value = hardness.step(random.signedUnit());
    }
    double mean = 0.0;
    for (const double value : burst) {
        mean += value / static_cast<double>(period);
    }
    double energy = 1e-9;
    for (double& value : burst) {
        value -= mean;
        energy += value * value / static_cast<double>(period);
    }
    const double level = 0.45 / std::sqrt(energy);
    const auto notch =
        std::max<std::size_t>(1, static_cast<std::size_t>(patch.position * static_cast<double>(period)));

    const double blend = 0.5 + 0.5 * patch.bright; // first weight of the two-point average in the feedback
    Envelope held({0.0, 1.0, 1.0, patch.release}, note.gateFrames, rate);
    StateVariableFilter body;
    const FilterTuning bodyTuning(patch.bodytone, 0.7, rate);
    double previous = 0.0;
    double allpassIn = 0.0;
    double allpassOut = 0.0;
    std::size_t write = 0;
    std::size_t delay = period;
    double allpass = 0.0;
    double loss = 0.0;

    StereoBuffer sound;
    const auto most = static_cast<std::size_t>(std::min(LongestNoteSeconds, 1.2 * patch.decay + 0.1) * rate);
    for (std::size_t frame = 0; frame < most && !held.ended(); ++frame) {
        if (frame % ControlFrames == 0) {
            const double now = frequencyOfNote(pitch.noteAt(frame));
            const double wanted = rate / now - (1.0 - blend); // the average delays by its second weight
            delay = std::min(static_cast<std::size_t>(wanted - 0.3), line.size() - 2);
            const double rest = wanted - static_cast<double>(delay);
            allpass = (1.0 - rest) / (1.0 + rest);
            loss = powerOfTwo(-9.96578428466208704576 / (patch.decay * now));
        }
        double fresh = 0.0;
        if (frame < period + notch) {
            fresh =
                (frame < period ? burst[frame] : 0.0) - 0.9 * (frame >= notch ? burst[frame - notch] : 0.0);
        }
        const double out = line[(write + line.size() - delay) % line.size()];
        const double tuned = allpass * (out - allpassOut) + allpassIn;
        allpassIn = out;
        allpassOut = tuned;
        const double averaged = blend * tuned + (1.0 - blend) * previous;
        previous = tuned;
        double value = fresh * level + averaged * loss;
        if (std::fabs(value) < 1e-20) {
            value = 0.0;
        }
        line[write] = value;
        write = write + 1 == line.size() ? 0 : write + 1;
        double heard = value + patch.body * body.step(value, bodyTuning).band;
        if (patch.drive > 0.0) {
            heard = saturate(heard * (1.0 + 6.0 * patch.drive)) / (1.0 + 1.5 * patch.drive);
        }
        const double gain = held.step() * note.velocity * 0.5;
        sound.left.push_back(heard * gain);
        sound.right.push_back(heard * gain);
    }
    return sound;
}

} // namespace tonewright::loops
