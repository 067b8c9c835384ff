// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// Measures an effect in a process of its own, compared with the same effect in the host.
// Usage: bench_effect_process blocks PAIRS | failures KILLS HANGS | starts STARTS
//            | offline URI BLOCK_FRAMES ROUNDS SECONDS | server FILE SECONDS
#include "measurements.hpp"

#include <cstdio>
#include <cstdlib>
#include <string_view>

int main(int count, char** words) {
    const std::string_view what = count > 1 ? words[1] : "";
    if (what == "blocks" && count == 3) {
        bench::measureBlocks(std::atoi(words[2]));
    } else if (what == "failures" && count == 4) {
        bench::measureFailures(std::atoi(words[2]), std::atoi(words[3]));
    } else if (what == "starts" && count == 3) {
        bench::measureStarts(std::atoi(words[2]));
    } else if (what == "offline" && count == 6) {
        bench::measureOffline(words[2], static_cast<unsigned>(std::atoi(words[3])), std::atoi(words[4]),
                              std::atof(words[5]));
    } else if (what == "server" && count == 4) {
        return bench::measureServer(words[2], std::atof(words[3])) ? 0 : 1;
    } else {
        std::fputs("usage: see the beginning of main.cpp\n", stderr);
        return 2;
    }
    return 0;
}
