// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Track.hpp"
#include "measurements.hpp"

#include "benches/support/measure.hpp"

namespace bench {
namespace {

constexpr std::uint32_t Frames = 256;
constexpr std::size_t Blocks = 512; // of the sound that is repeated
constexpr int WarmUp = 2400;        // periods; longer than it takes until the host has placed the processes

double percentile(std::vector<double> values, double share) {
    std::ranges::sort(values);
    return values[static_cast<std::size_t>(share * static_cast<double>(values.size() - 1))];
}

} // namespace

void measureBlocks(int pairs) {
    Track inProcess(makeUnit(BundledEffect, Where::InProcess), Frames, false);
    Track ownProcess(makeUnit(BundledEffect, Where::OwnProcess), Frames, false);
    const Sound in = chord(Blocks, Frames);
    Sound out(2 * Frames);
    std::vector<double> inside, outside, added, ratios;
    bool isRealtime = false;
    std::thread([&] {
        isRealtime = becomeRealtime();
        auto next = std::chrono::steady_clock::now();
        const auto total = static_cast<std::size_t>(WarmUp + 2 * pairs);
        for (std::size_t i = 0; i < total; ++i) {
            // The effect hears each block in both processes.
            const float* const block = &in[i / 2 % Blocks * 2 * Frames];
            Track& track = i % 2 == 0 ? inProcess : ownProcess;
            const double taken = nanoseconds(
                [&] { track.render(block, out.data(), static_cast<std::int64_t>(i / 2 * Frames)); });
            if (i >= WarmUp) (i % 2 == 0 ? inside : outside).push_back(taken / 1000);
            next += period(Frames);
            std::this_thread::sleep_until(next);
        }
    }).join();
    for (std::size_t i = 0; i < outside.size(); ++i) {
        added.push_back(outside[i] - inside[i]);
        ratios.push_back(outside[i] / inside[i]);
    }
    std::printf(
        "realtime %d\nin_process_us %.2f\nin_process_us_p99 %.2f\nown_process_us %.2f\nown_process_us_p99 "
        "%.2f\nadded_us_median %.2f\nadded_us_p99 %.2f\nadded_us_worst %.2f\nblock/in_process %.3f\n",
        isRealtime ? 1 : 0, median(inside), percentile(inside, 0.99), median(outside),
        percentile(outside, 0.99), median(added), percentile(added, 0.99), percentile(added, 1),
        median(ratios));
}

} // namespace bench
