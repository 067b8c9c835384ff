// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Loudness.hpp"

#include "ExactMath.hpp"

#include <algorithm>
#include <array>
#include <cmath>

namespace tonewright::loops {

namespace {

struct Biquad {
    double b0 = 1, b1 = 0, b2 = 0, a1 = 0, a2 = 0;
    double s1 = 0, s2 = 0;

    double step(double x) noexcept {
        const double y = b0 * x + s1;
        s1 = b1 * x - a1 * y + s2;
        s2 = b2 * x - a2 * y;
        if (std::fabs(s1) < 1e-25) s1 = 0.0;
        if (std::fabs(s2) < 1e-25) s2 = 0.0;
        return y;
    }
};

double tangent(double hertz, double rate) {
    return sineOfTurns(hertz / rate * 0.5) / cosineOfTurns(hertz / rate * 0.5);
}

// The two stages of the weighting. Their analogue prototypes give the coefficients of BS.1770 at 48 kHz, and
// the same response at other rates.
Biquad headShelf(double rate) {
    const double k = tangent(1681.974450955533, rate);
    const double q = 0.7071752369554196;
    const double high = gainOfDecibels(3.999843853973347);
    const double band = powerOfTwo(0.4996667741545416 * logarithmOfTwo(high));
    const double a0 = 1.0 + k / q + k * k;
    return {(high + band * k / q + k * k) / a0, 2.0 * (k * k - high) / a0, (high - band * k / q + k * k) / a0,
            2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0};
}

Biquad earHighPass(double rate) {
    const double k = tangent(38.13547087602444, rate);
    const double q = 0.5003270373238773;
    const double a0 = 1.0 + k / q + k * k;
    return {1.0, -2.0, 1.0, 2.0 * (k * k - 1.0) / a0, (1.0 - k / q + k * k) / a0};
}

/// Returns the weighted power of every frame, summed over both channels.
std::vector<double> weightedPower(const StereoBuffer& loop, double rate) {
    std::array<Biquad, 2> shelves{headShelf(rate), headShelf(rate)};
    std::array<Biquad, 2> passes{earHighPass(rate), earHighPass(rate)};
    StereoBuffer copy = loop;
    runAround(copy, static_cast<std::size_t>(0.5 * rate), [&](StereoFrame in, std::size_t) {
        return StereoFrame{passes[0].step(shelves[0].step(in.left)),
                           passes[1].step(shelves[1].step(in.right))};
    });
    std::vector<double> power(loop.frames());
    for (std::size_t frame = 0; frame < power.size(); ++frame) {
        power[frame] = copy.left[frame] * copy.left[frame] + copy.right[frame] * copy.right[frame];
    }
    return power;
}

double unitsOf(double power) {
    return -0.691 + 0.5 * decibelsOfGain(power);
}

} // namespace

double loudnessOf(const StereoBuffer& loop, double rate) {
    double sum = 0.0;
    for (const double power : weightedPower(loop, rate)) {
        sum += power;
    }
    return unitsOf(sum / static_cast<double>(loop.frames()));
}

double loudnessWhileSounding(const StereoBuffer& loop, double rate) {
    const std::vector<double> power = weightedPower(loop, rate);
    const auto length = static_cast<std::size_t>(0.05 * rate);
    std::vector<double> stretches;
    for (std::size_t start = 0; start < power.size(); start += length) {
        const std::size_t end = std::min(start + length, power.size());
        double sum = 0.0;
        for (std::size_t frame = start; frame < end; ++frame) sum += power[frame];
        stretches.push_back(sum / static_cast<double>(end - start));
    }
    const double loudest = *std::max_element(stretches.begin(), stretches.end());
    double sum = 0.0;
    double count = 0.0;
    for (const double stretch : stretches) {
        if (stretch >= 0.05 * loudest) {
            sum += stretch;
            count += 1.0;
        }
    }
    return unitsOf(sum / std::max(count, 1.0));
}

void limitPeaks(StereoBuffer& loop, double ceiling, double rate) {
    const std::size_t length = loop.frames();
    if (length == 0) return;
    const auto ahead = static_cast<std::size_t>(0.0015 * rate);
    // Computes the gain that each frame needs, and takes the minimum within `ahead` frames on either side.
    std::vector<double> needed(length);
    for (std::size_t frame = 0; frame < length; ++frame) {
        const double peak = std::max(std::fabs(loop.left[frame]), std::fabs(loop.right[frame]));
        needed[frame] = peak > ceiling ? ceiling / peak : 1.0;
    }
    std::vector<double> held(length, 1.0);
    for (std::size_t frame = 0; frame < length; ++frame) {
        if (needed[frame] == 1.0) continue;
        for (std::size_t offset = 0; offset <= 2 * ahead; ++offset) {
            double& here = held[(frame + length + offset - ahead) % length];
            here = std::min(here, needed[frame]);
        }
    }
    // Lets the gain recover slowly, over two rounds, so that the end of the loop continues into its
    // beginning.
    const double recovery = 1.0 - decayFactor(0.12, rate);
    double gain = 1.0;
    for (std::size_t frame = 0; frame < 2 * length; ++frame) {
        gain = std::min(held[frame % length], gain + (1.0 - gain) * recovery);
        if (frame >= length) held[frame - length] = gain;
    }
    // Averages the gain over the same window, so that it changes smoothly and is low enough at the peak.
    const double share = 1.0 / static_cast<double>(2 * ahead + 1);
    double sum = 0.0;
    for (std::size_t offset = 0; offset < 2 * ahead; ++offset) {
        sum += held[(length + offset - ahead) % length];
    }
    for (std::size_t frame = 0; frame < length; ++frame) {
        sum += held[(frame + ahead) % length];
        const double mean = std::min(sum * share, 1.0);
        loop.left[frame] *= mean;
        loop.right[frame] *= mean;
        sum -= held[(frame + length - ahead) % length];
    }
}

void compress(StereoBuffer& loop, double threshold, double ratio, double rate) {
    const double rise = 1.0 - decayFactor(0.03, rate);
    const double attack = 1.0 - decayFactor(0.05, rate);
    const double release = 1.0 - decayFactor(0.5, rate);
    const double limit = gainOfDecibels(threshold);
    const double slope = 1.0 - 1.0 / ratio;
    double power = 0.0;
    double gain = 1.0;
    double target = 1.0;
    runAround(loop, static_cast<std::size_t>(2.0 * rate), [&](StereoFrame in, std::size_t frame) {
        power += rise * (0.5 * (in.left * in.left + in.right * in.right) - power);
        if (frame % 16 == 0) {
            const double level = std::sqrt(power);
            target = level > limit ? powerOfTwo(-slope * logarithmOfTwo(level / limit)) : 1.0;
        }
        gain += (target < gain ? attack : release) * (target - gain);
        return StereoFrame{in.left * gain, in.right * gain};
    });
}

} // namespace tonewright::loops
