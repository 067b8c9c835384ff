// SPDX-FileCopyrightText: 2026 The Tonewright Authors
// SPDX-License-Identifier: GPL-3.0-or-later

// The measurements of this benchmark. Each prints lines with a name and a value on standard output. Main
// thread; one measurement per process.
#pragma once

#include <string>

namespace bench {

/// Measures how long a block of 256 frames takes in the host and in a process of its own, in `pairs` pairs of
/// periods of a sound card.
void measureBlocks(int pairs);
/// Kills the effect's process `kills` times at random moments and stops it `hangs` times, while it plays, and
/// counts from the output the blocks without the effect.
void measureFailures(int kills, int hangs);
/// Measures `starts` starts of a process, and the memory of processes that play.
void measureStarts(int starts);
/// Compares rendering offline in `rounds` alternating rounds of `seconds` seconds of sound.
void measureOffline(const std::string& uri, unsigned blockFrames, int rounds, double seconds);
/// Plays a file to the sound server for `seconds` seconds and counts the blocks that were lost. Returns false
/// if nothing was played.
bool measureServer(const std::string& file, double seconds);

} // namespace bench
