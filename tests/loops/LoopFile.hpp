// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Compares a loop's file, as the program plays it, with the samples from which it was encoded.
#pragma once

#include "loops/synth/Render.hpp"
#include "tests/audio/audioFixture.hpp"

namespace tonewright::loops {

/// Returns `passes` passes of the file, played one after the other at its own rate.
inline test::Sound passesOf(const std::string& path, int rate, int passes) {
    const auto file = platform::AVAudioFile::open(platform::URL::fileURLWithPath(path));
    if (!file) {
        ADD_FAILURE() << file.error().localizedDescription();
        return {};
    }
    const platform::AVAudioFormat format = file.value()->processingFormat();
    EXPECT_EQ(format.sampleRate, rate);
    test::OfflineEngine offline(format);
    offline.loop(file.value(), passes);
    offline.start();
    return offline.render(static_cast<std::size_t>(file.value()->lengthFrames() * passes));
}

/// Expects the file to contain every frame of `pcm` in its place, coded around the seam as well as elsewhere,
/// with a signal-to-noise ratio of at least `signalToNoise` decibels. Returns the decoded sound.
inline test::Sound expectLoop(const std::string& path, const Pcm& pcm, double signalToNoise) {
    test::Sound decoded = passesOf(path, pcm.rate, 1);
    if (decoded.size() != pcm.channels.size() || decoded[0].size() != pcm.frames()) {
        ADD_FAILURE() << "channels or frames are missing, or too many";
        return decoded;
    }
    constexpr std::size_t Around = 2000; // frames on either side of the seam
    double seam = 0, rest = 0, signal = 0;
    for (std::size_t channel = 0; channel < decoded.size(); ++channel) {
        for (std::size_t frame = 0; frame < pcm.frames(); ++frame) {
            const double wanted = static_cast<double>(pcm.channels[channel][frame]);
            const double error = static_cast<double>(decoded[channel][frame]) - wanted;
            (frame < Around || frame + Around >= pcm.frames() ? seam : rest) += error * error;
            signal += wanted * wanted;
        }
    }
    const auto decibels = [](double power) { return 10.0 * std::log10(power + 1e-20); };
    EXPECT_LE(decibels(seam / (2.0 * Around)) -
                  decibels(rest / static_cast<double>(pcm.frames() - 2 * Around)),
              3.0);
    EXPECT_GT(decibels(signal) - decibels(seam + rest), signalToNoise);
    return decoded;
}

} // namespace tonewright::loops
