// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

#include "Track.hpp"
#include "measurements.hpp"

#include "benches/support/measure.hpp"

namespace bench {

void measureOffline(const std::string& uri, unsigned blockFrames, int rounds, double seconds) {
    Track inProcess(makeUnit(uri, Where::InProcess), blockFrames, true);
    Track ownProcess(makeUnit(uri, Where::OwnProcess), blockFrames, true);
    constexpr std::size_t Blocks = 16;
    const Sound in = chord(Blocks, blockFrames);
    Sound out(2 * std::size_t{blockFrames});
    const auto blocks = static_cast<std::size_t>(seconds * Rate / blockFrames);
    const auto render = [&](Track& track, std::size_t round) {
        return nanoseconds([&] {
            for (std::size_t i = 0; i < blocks; ++i) {
                track.render(&in[i % Blocks * 2 * blockFrames], out.data(),
                             static_cast<std::int64_t>((round * blocks + i) * blockFrames));
            }
        });
    };
    std::vector<double> ratios, inside, outside;
    for (std::size_t round = 0; round <= static_cast<std::size_t>(rounds); ++round) {
        const double host = render(inProcess, round), own = render(ownProcess, round);
        if (round == 0) continue; // fills the caches
        ratios.push_back(own / host);
        inside.push_back(host / 1000 / static_cast<double>(blocks));
        outside.push_back(own / 1000 / static_cast<double>(blocks));
    }
    std::printf("in_process_us %.3f\nown_process_us %.3f\nratio %.3f\n", median(inside), median(outside),
                median(ratios));
}

} // namespace bench
